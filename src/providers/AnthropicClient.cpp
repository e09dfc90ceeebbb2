#include "providers/AnthropicClient.h"

#include <chrono>
#include <memory>
#include <utility>

#include "base/Trace.h"
#include "platform/HttpResponse.h"
#include "providers/EventStreamLines.h"

namespace quillmark {
namespace {

using APIError = AnthropicClient::APIError;
using enum APIError::Case;

constexpr std::chrono::seconds timeout{60};

/// The URL with its path replaced; what precedes and follows the path stays.
std::string withPath(const std::string& url, const std::string& path) {
  const auto scheme = url.find("://");
  const auto authority = scheme == std::string::npos ? 0 : scheme + 3;
  const auto pathStart = std::min(url.find_first_of("/?#", authority), url.size());
  const auto pathEnd = std::min(url.find_first_of("?#", pathStart), url.size());
  return url.substr(0, pathStart) + path + url.substr(pathEnd);
}

APIError unsuccessful(int status, const std::string& body) {
  return {responseUnsuccessful, "status code " + std::to_string(status) + anthropicErrorMessage(body).value_or("")};
}

APIError failedRequest(const HttpFailure& failure) { return {requestFailed, failure.description}; }

Expected<MessageResponse, APIError> decoded(const HttpResponse& response) {
  if (response.head.status != 200) {
    return unexpected(unsuccessful(response.head.status, response.body));
  }
  try {
    return messageResponseFromJson(parseJson(response.body));
  } catch (const DecodingError& error) {
    return unexpected(APIError{jsonDecodingFailure, error.what()});
  }
}

/// One stream, from its head to its end. Belongs to the session's thread.
class Stream {
 public:
  Stream(std::function<void(const MessageStreamResponse&)> onEvent,
         std::function<void(const std::optional<APIError>&)> onEnd)
      : onEvent_(std::move(onEvent)), onEnd_(std::move(onEnd)) {}

  void handleHead(const HttpResponseHead& head) { status_ = head.status; }

  void handleBytes(const std::string& bytes) {
    if (status_ != 200) {
      errorBody_ += bytes;
      return;
    }
    lines_.feed(bytes, [this](const std::string& line) { handleLine(line); });
  }

  void handleEnd(const std::optional<HttpFailure>& failure) {
    if (failure) {
      end(failedRequest(*failure));
      return;
    }
    if (status_ != 200) {
      end(unsuccessful(status_, errorBody_));
      return;
    }
    lines_.finish([this](const std::string& line) { handleLine(line); });
    end(std::nullopt);
  }

 private:
  void handleLine(const std::string& line) {
    constexpr std::string_view prefix = "data:";
    if (isOver_ || !line.starts_with(prefix)) {
      return;
    }
    try {
      onEvent_(messageStreamResponseFromJson(parseJson(std::string_view(line).substr(prefix.size()))));
    } catch (const DecodingError& error) {
      end(APIError{jsonDecodingFailure, error.what()});
    }
  }

  /// Only the first call counts.
  void end(const std::optional<APIError>& failure) {
    if (!std::exchange(isOver_, true)) {
      onEnd_(failure);
    }
  }

  std::function<void(const MessageStreamResponse&)> onEvent_;
  std::function<void(const std::optional<APIError>&)> onEnd_;
  int status_ = 0;
  std::string errorBody_;
  EventStreamLines lines_;
  bool isOver_ = false;
};

}  // namespace

HttpRequest AnthropicClient::request(const Json& parameter) const {
  HttpRequest request;
  request.method = "POST";
  request.url = withPath(baseURL_, "/v1/messages");
  request.headers = {{"Content-Type", "application/json"}, {"x-api-key", apiKey_}, {"anthropic-version", apiVersion}};
  request.body = toText(parameter);
  request.patience = timeout;
  return request;
}

void AnthropicClient::createMessage(const Json& parameter,
                                    std::function<void(Expected<MessageResponse, APIError>)> completion) const {
  fetch(session_, request(parameter),
        [completion = std::move(completion)](const Expected<HttpResponse, HttpFailure>& response) {
          trace::mark(trace::answerReceived);
          completion(response ? decoded(*response) : unexpected(failedRequest(response.error())));
        });
}

void AnthropicClient::streamMessage(const Json& parameter, std::function<void(const MessageStreamResponse&)> onEvent,
                                    std::function<void(const std::optional<APIError>& failure)> onEnd) const {
  const auto stream = std::make_shared<Stream>(std::move(onEvent), std::move(onEnd));
  HttpHandlers handlers;
  handlers.onHead = [stream](const HttpResponseHead& head) {
    stream->handleHead(head);
    return true;
  };
  handlers.onBytes = [stream](const std::string& bytes) { stream->handleBytes(bytes); };
  handlers.onComplete = [stream](const std::optional<HttpFailure>& failure) {
    trace::mark(trace::answerReceived);
    stream->handleEnd(failure);
  };
  session_.start(request(parameter), std::move(handlers));
}

}  // namespace quillmark
