#include "providers/OpenAIProvider.h"

#include <memory>

#include "base/Log.h"
#include "base/Text.h"
#include "base/Trace.h"
#include "providers/ChatCompletions.h"
#include "providers/StreamedAnswer.h"

namespace quillmark {

OpenAIProvider::OpenAIProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
    : AIProvider(config, ProviderType::openAI),
      organization_(config.organization.empty() ? std::nullopt : std::optional(config.organization)),
      environment_(environment) {}

OpenAIClient OpenAIProvider::makeClient() const {
  OpenAIClient::Configuration configuration = environment_.openAI;
  configuration.token = text::trimmed(apiKey());
  configuration.organizationIdentifier = organization_;
  return {environment_.http, std::move(configuration)};
}

std::function<void(const std::string&, const std::string&)> OpenAIProvider::reporter() const {
  return [&alerts = environment_.alerts, name = name()](const std::string& description, const std::string& logLabel) {
    log(logLabel + description);
    alerts.show(AlertKind::issue(name, description));
  };
}

void OpenAIProvider::chat(const std::string& text, const std::string& systemPrompt,
                          const std::optional<std::string>& model, ChatCompletion completion) {
  trace::mark(trace::requestSent);
  makeClient().chats(chatQuery(text, systemPrompt, modelOrDefault(model), false),
                     [report = reporter(), completion = std::move(completion)](const auto& result) {
                       if (!result) {
                         report(result.error(), "");
                         completion(std::nullopt);
                         return;
                       }
                       const auto& choices = result->choices;
                       if (choices.empty() || choices.front().content.value_or("").empty()) {
                         log("Message is empty " + describe(*result));
                         completion(std::nullopt);
                         return;
                       }
                       completion(withoutBraces(*choices.front().content));
                     });
}

void OpenAIProvider::streamChat(const std::string& text, const std::string& systemPrompt,
                                const std::optional<std::string>& model,
                                std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) {
  const auto answer = std::make_shared<StreamedAnswer>(environment_.queue, std::move(onChunk), std::move(onComplete));
  trace::mark(trace::requestSent);
  makeClient().chatsStream(
      chatQuery(text, systemPrompt, modelOrDefault(model), true),
      [answer](const ChatStreamResult& result) {
        if (!result.choices.empty() && result.choices.front().content) {
          answer->append(withoutBraces(*result.choices.front().content));
        }
      },
      [answer, report = reporter()](const std::optional<std::string>& failure) {
        if (failure) {
          report(*failure, "Streaming error: ");
          answer->fail();
        } else {
          answer->finish();
        }
      });
}

void OpenAIProvider::listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) {
  makeClient().models([report = reporter(),
                       finish = onMainQueue(environment_.queue, std::move(completion))](const auto& identifiers) {
    std::optional<std::vector<ProviderModel>> models;
    if (identifiers) {
      models.emplace();
      for (const auto& identifier : *identifiers) {
        models->push_back({Uuid::random(), identifier, ProviderType::openAI, identifier, std::nullopt, std::nullopt});
      }
    } else {
      report(identifiers.error(), "");
    }
    finish(std::move(models));
  });
}

}  // namespace quillmark
