#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/Expected.h"
#include "base/Json.h"
#include "platform/HttpSession.h"
#include "providers/AnthropicRecords.h"

namespace quillmark {

/// Anthropic's messages API, as far as the system uses it. Callbacks run on the session's thread, possibly after the
/// client is destroyed.
class AnthropicClient {
 public:
  static constexpr const char* apiVersion = "2023-06-01";

  /// Why a request failed; `description` is what the user sees.
  struct APIError {
    enum class Case { requestFailed, responseUnsuccessful, jsonDecodingFailure };
    Case kind = Case::requestFailed;
    std::string description;
  };

  /// The key is sent as it is. The path of the address is replaced by the API's.
  AnthropicClient(HttpSession& session, std::string apiKey, std::string baseURL)
      : session_(session), apiKey_(std::move(apiKey)), baseURL_(std::move(baseURL)) {}

  /// `parameter` is the request's body.
  void createMessage(const Json& parameter, std::function<void(Expected<MessageResponse, APIError>)> completion) const;

  /// Reports each event of the stream, then ends once, with a failure if there was one. Nothing follows the end.
  void streamMessage(const Json& parameter, std::function<void(const MessageStreamResponse&)> onEvent,
                     std::function<void(const std::optional<APIError>& failure)> onEnd) const;

 private:
  HttpRequest request(const Json& parameter) const;

  HttpSession& session_;
  std::string apiKey_;
  std::string baseURL_;
};

}  // namespace quillmark
