#include "providers/AnthropicProvider.h"

#include <memory>

#include "base/Log.h"
#include "base/Text.h"
#include "base/Trace.h"
#include "providers/ModelListing.h"
#include "providers/StreamedAnswer.h"

namespace quillmark {

std::function<void(const AnthropicClient::APIError&)> AnthropicProvider::reporter() const {
  return [&alerts = environment_.alerts](const AnthropicClient::APIError& error) {
    log("Error: " + error.description);
    alerts.show(AlertKind::issue(info(ProviderType::anthropic).displayName, error.description));
  };
}

void AnthropicProvider::chat(const std::string& text, const std::string& systemPrompt,
                             const std::optional<std::string>& model, ChatCompletion completion) {
  trace::mark(trace::requestSent);
  makeClient().createMessage(messageParameter(text, systemPrompt, modelOrDefault(model), false),
                             [report = reporter(), completion = std::move(completion)](const auto& response) {
                               if (!response) {
                                 report(response.error());
                                 completion(std::nullopt);
                                 return;
                               }
                               completion(response->text);
                             });
}

void AnthropicProvider::streamChat(const std::string& text, const std::string& systemPrompt,
                                   const std::optional<std::string>& model,
                                   std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) {
  const auto answer = std::make_shared<StreamedAnswer>(environment_.queue, std::move(onChunk), std::move(onComplete));
  trace::mark(trace::requestSent);
  makeClient().streamMessage(
      messageParameter(text, systemPrompt, modelOrDefault(model), true),
      [answer](const MessageStreamResponse& event) {
        if (event.deltaText) {
          answer->append(*event.deltaText);
        }
      },
      [answer, report = reporter()](const std::optional<AnthropicClient::APIError>& failure) {
        if (failure) {
          report(*failure);
          answer->fail();
        } else {
          answer->finish();
        }
      });
}

void AnthropicProvider::listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) {
  TransportRequest request{"GET", baseURL() + "/v1/models", {}, std::nullopt};
  request.headers = {{"x-api-key", std::string(text::trimmed(apiKey()))},
                     {"anthropic-version", AnthropicClient::apiVersion},
                     {"Accept", "application/json"}};
  requestModels(environment_.transport, std::move(request), providerType(), {}, std::move(completion));
}

}  // namespace quillmark
