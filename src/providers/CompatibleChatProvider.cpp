#include "providers/CompatibleChatProvider.h"

#include "base/Log.h"
#include "base/Text.h"
#include "base/Trace.h"
#include "providers/SSEStreamParser.h"
#include "providers/StreamedAnswer.h"

namespace quillmark {
namespace {

/// A plain text stream escapes line feed, tab and carriage return as a backslash and a letter.
std::string withoutEscapes(std::string chunk) {
  for (const auto& [escape, character] : {std::pair("\\n", "\n"), std::pair("\\t", "\t"), std::pair("\\r", "\r")}) {
    chunk = text::replacingAll(std::move(chunk), escape, character);
  }
  return chunk;
}

}  // namespace

TransportRequest CompatibleChatProvider::request(const ChatDialect& dialect, std::string method,
                                                 std::string url) const {
  TransportRequest request{std::move(method), std::move(url), {}, std::nullopt};
  request.headers = {{"Authorization", "Bearer " + dialect.authorization}, {"Accept", "application/json"}};
  request.headers.insert(request.headers.end(), dialect.extraHeaders.begin(), dialect.extraHeaders.end());
  return request;
}

TransportRequest CompatibleChatProvider::chatRequest(const ChatDialect& dialect, const std::string& text,
                                                     const std::string& systemPrompt,
                                                     const std::optional<std::string>& model, bool stream) const {
  TransportRequest query = request(dialect, "POST", dialect.chatUrl);
  query.body = chatQuery(text, systemPrompt, dialect.modelName(modelOrDefault(model)), stream);
  return query;
}

void CompatibleChatProvider::chat(const std::string& text, const std::string& systemPrompt,
                                  const std::optional<std::string>& model, ChatCompletion completion) {
  const ChatDialect dialect = this->dialect();
  const auto finish = [&alerts = environment_.alerts, alert = dialect.alert,
                       completion = std::move(completion)](const Expected<GenericChatResult, TransportError>& result) {
    if (!result) {
      log("Failure " + result.error().description);
      alerts.show(alert(result.error().description));
      completion(std::nullopt);
      return;
    }
    const std::string description = describe(*result);
    log(description);
    if (result->choices.empty()) {
      log("Validation failed " + description);
      completion(std::nullopt);
      return;
    }
    log("Validation Successful " + description);
    const auto& content = result->choices.front().message.content;
    completion(content ? std::optional(withoutBraces(*content)) : std::nullopt);
  };
  trace::mark(trace::requestSent);
  environment_.transport.send<GenericChatResult>(chatRequest(dialect, text, systemPrompt, model, false),
                                                 dialect.chatRecord.name, dialect.chatRecord.decode, finish);
}

void CompatibleChatProvider::streamChat(const std::string& text, const std::string& systemPrompt,
                                        const std::optional<std::string>& model,
                                        std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) {
  const ChatDialect dialect = this->dialect();
  const auto answer = std::make_shared<StreamedAnswer>(environment_.queue, std::move(onChunk), std::move(onComplete));
  const auto handleChunk = [answer, stream = dialect.stream](const std::string& chunk) {
    if (answer->isFinished()) {
      return;
    }
    if (stream == ChatDialect::Stream::plainText) {
      answer->append(withoutEscapes(chunk));
    } else if (SSEStreamParser::handleChunk(chunk, [&](std::string piece) { answer->append(std::move(piece)); })) {
      answer->finish();
    }
  };
  // The error of a broken stream is ignored: what has arrived is the answer.
  const auto handleEnd = [answer, line = dialect.streamEndLine](const std::optional<TransportError>&) {
    if (!answer->isFinished()) {
      log(line);
    }
    answer->finish();
  };
  environment_.transport.stream(chatRequest(dialect, text, systemPrompt, model, true), handleChunk, handleEnd);
}

void CompatibleChatProvider::listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) {
  const ChatDialect dialect = this->dialect();
  if (!dialect.modelsUrl) {
    completion(std::nullopt);
    return;
  }
  requestModels(environment_.transport, request(dialect, "GET", *dialect.modelsUrl), providerType(), dialect.listing,
                std::move(completion));
}

}  // namespace quillmark
