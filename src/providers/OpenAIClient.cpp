#include "providers/OpenAIClient.h"

#include <memory>
#include <utility>

#include "base/Trace.h"
#include "platform/HttpResponse.h"
#include "providers/ServerSentEventsStreamInterpreter.h"

namespace quillmark {
namespace {

std::string statusError(const std::string& url, int status) {
  const std::string number = std::to_string(status);
  return "statusError(response: HTTP " + number + " from " + url + ", statusCode: " + number + ")";
}

constexpr const char* emptyData = "emptyData";

/// A body is the expected record, or else an error in one of the known forms, or else invalid.
template <class T>
Expected<T, std::string> decoded(const std::string& body, T (*decode)(const Json&)) {
  if (body.empty()) {
    return unexpected(std::string(emptyData));
  }
  std::string problem;
  try {
    const Json json = parseJson(body);
    try {
      return decode(json);
    } catch (const DecodingError& error) {
      problem = apiErrorMessage(json).value_or(error.what());
    }
  } catch (const DecodingError& error) {
    problem = error.what();
  }
  return unexpected(std::move(problem));
}

/// One stream, from its head to its end. Belongs to the session's thread.
class Stream {
 public:
  Stream(std::string url, std::function<void(const ChatStreamResult&)> onResult,
         std::function<void(std::optional<std::string>)> onEnd)
      : url_(std::move(url)), onResult_(std::move(onResult)), onEnd_(std::move(onEnd)) {}

  bool handleHead(const HttpResponseHead& head) {
    if (head.status >= 400) {
      end(statusError(url_, head.status));
    }
    return !isOver_;
  }

  void handleBytes(const std::string& bytes) {
    parser_.feed(bytes, [this](const ServerSentEventsStreamParser::Event& event) {
      if (isOver_) {
        return;
      }
      const auto result = ServerSentEventsStreamInterpreter::interpret(event);
      if (!result) {
        end(result.error());
      } else if (*result) {
        onResult_(**result);
      } else {
        end(std::nullopt);
      }
    });
  }

  /// Only the first call counts.
  void end(const std::optional<std::string>& failure) {
    if (!std::exchange(isOver_, true)) {
      onEnd_(failure);
    }
  }

 private:
  std::string url_;
  std::function<void(const ChatStreamResult&)> onResult_;
  std::function<void(std::optional<std::string>)> onEnd_;
  ServerSentEventsStreamParser parser_;
  bool isOver_ = false;
};

}  // namespace

HttpRequest OpenAIClient::request(const char* method, const char* path, const Json* body) const {
  const int usualPort = configuration_.scheme == "https" ? 443 : 80;
  HttpRequest request;
  request.method = method;
  request.url = configuration_.scheme + "://" + configuration_.host;
  if (configuration_.port != usualPort) {
    request.url += ":" + std::to_string(configuration_.port);
  }
  request.url += configuration_.basePath + path;
  request.headers.push_back({"Content-Type", "application/json"});
  if (configuration_.token) {
    request.headers.push_back({"Authorization", "Bearer " + *configuration_.token});
  }
  if (configuration_.organizationIdentifier) {
    request.headers.push_back({"OpenAI-Organization", *configuration_.organizationIdentifier});
  }
  if (body != nullptr) {
    request.body = toText(*body);
  }
  request.patience = configuration_.timeoutInterval;
  return request;
}

template <class T>
void OpenAIClient::perform(HttpRequest request, T (*decode)(const Json&), Completion<T> completion) const {
  fetch(session_, std::move(request),
        [decode, completion = std::move(completion)](const Expected<HttpResponse, HttpFailure>& response) {
          trace::mark(trace::answerReceived);
          completion(response ? decoded(response->body, decode) : unexpected(response.error().description));
        });
}

void OpenAIClient::chats(const Json& query, Completion<ChatResult> completion) const {
  perform(request("POST", "/chat/completions", &query), chatResultFromJson, std::move(completion));
}

void OpenAIClient::models(Completion<std::vector<std::string>> completion) const {
  perform(request("GET", "/models", nullptr), modelsResultFromJson, std::move(completion));
}

void OpenAIClient::chatsStream(const Json& query, std::function<void(const ChatStreamResult&)> onResult,
                               std::function<void(std::optional<std::string> failure)> onEnd) const {
  HttpRequest prepared = request("POST", "/chat/completions", &query);
  const auto stream = std::make_shared<Stream>(prepared.url, std::move(onResult), std::move(onEnd));
  HttpHandlers handlers;
  handlers.onHead = [stream](const HttpResponseHead& head) { return stream->handleHead(head); };
  handlers.onBytes = [stream](const std::string& bytes) { stream->handleBytes(bytes); };
  handlers.onComplete = [stream](const std::optional<HttpFailure>& failure) {
    trace::mark(trace::answerReceived);
    stream->end(failure ? std::optional(failure->description) : std::nullopt);
  };
  session_.start(std::move(prepared), std::move(handlers));
}

}  // namespace quillmark
