#include "providers/CompatibleChatProvider.h"

#include "base/Log.h"
#include "base/Text.h"
#include "base/Trace.h"
#include "providers/SSEStreamParser.h"

namespace quillmark {
namespace {

/// Models wrap an answer in the double braces of their prompt now and then.
std::string withoutBraces(std::string answer) {
  return text::replacingAll(text::replacingAll(std::move(answer), "{{", ""), "}}", "");
}

/// What the callbacks of one stream share. Main thread only.
class StreamedAnswer : public std::enable_shared_from_this<StreamedAnswer> {
 public:
  StreamedAnswer(MainQueue& queue, std::function<void(const std::string&)> onChunk,
                 AIProvider::ChatCompletion onComplete)
      : queue_(queue), onChunk_(std::move(onChunk)), onComplete_(std::move(onComplete)) {}

  bool isFinished() const { return finished_; }

  void append(std::string piece) {
    fullText_ += piece;
    queue_.async([self = shared_from_this(), piece = std::move(piece)] { self->onChunk_(piece); });
  }

  /// The first call counts: the end mark and the end of the connection both lead here.
  void finish() {
    if (std::exchange(finished_, true)) {
      return;
    }
    queue_.async([self = shared_from_this()] {
      self->onComplete_(self->fullText_.empty() ? std::nullopt : std::optional(self->fullText_));
    });
  }

 private:
  MainQueue& queue_;
  std::function<void(const std::string&)> onChunk_;
  AIProvider::ChatCompletion onComplete_;
  std::string fullText_;
  bool finished_ = false;
};

/// A plain text stream writes line feed, tab and carriage return as a backslash and a letter.
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

void CompatibleChatProvider::chat(const std::string& text, const std::string& systemPrompt,
                                  const std::optional<std::string>& model, ChatCompletion completion) {
  const ChatDialect dialect = this->dialect();
  TransportRequest query = request(dialect, "POST", dialect.chatUrl);
  query.body = chatQuery(text, systemPrompt, modelOrDefault(model), false);

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
  trace::mark("request sent");
  environment_.transport.send<GenericChatResult>(std::move(query), "GenericChatResult", genericChatResultFromJson,
                                                 finish);
}

void CompatibleChatProvider::streamChat(const std::string& text, const std::string& systemPrompt,
                                        const std::optional<std::string>& model,
                                        std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) {
  const ChatDialect dialect = this->dialect();
  TransportRequest query = request(dialect, "POST", dialect.chatUrl);
  query.body = chatQuery(text, systemPrompt, modelOrDefault(model), true);

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
  // The error of a broken stream is not looked at: what arrived is the answer.
  const auto handleEnd = [answer, line = dialect.streamEndLine](const std::optional<TransportError>&) {
    if (!answer->isFinished()) {
      log(line);
    }
    answer->finish();
  };
  environment_.transport.stream(std::move(query), handleChunk, handleEnd);
}

void CompatibleChatProvider::listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) {
  const ChatDialect dialect = this->dialect();
  if (!dialect.modelsUrl) {
    completion(std::nullopt);
    return;
  }
  const auto finish = [type = providerType(), logsCount = dialect.logsModelCount, completion = std::move(completion)](
                          const Expected<std::vector<GenericModelData>, TransportError>& listing) {
    if (!listing) {
      log("Failure " + listing.error().description);
      completion(std::nullopt);
      return;
    }
    std::vector<ProviderModel> models;
    for (const auto& entry : *listing) {
      models.push_back(entry.toModel(type));
    }
    if (logsCount) {
      log("models: " + std::to_string(models.size()));
    }
    completion(std::move(models));
  };
  environment_.transport.send<std::vector<GenericModelData>>(request(dialect, "GET", *dialect.modelsUrl),
                                                             "GenericModelResponse", dialect.decodeModels, finish);
}

}  // namespace quillmark
