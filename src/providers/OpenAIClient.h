#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Expected.h"
#include "base/Json.h"
#include "platform/HttpSession.h"
#include "providers/OpenAIRecords.h"

namespace quillmark {

/// OpenAI's API, as far as the system uses it: a chat, a streamed chat, the listing of models. A failure is the
/// description that the user sees. Callbacks run on the session's thread, possibly after the client is destroyed.
class OpenAIClient {
 public:
  struct Configuration {
    std::optional<std::string> token = std::nullopt;
    std::optional<std::string> organizationIdentifier = std::nullopt;
    std::string host;
    std::string basePath = "/v1";
    int port = 443;
    std::string scheme = "https";
    std::chrono::seconds timeoutInterval{120};
  };
  template <class T>
  using Completion = std::function<void(Expected<T, std::string>)>;

  OpenAIClient(HttpSession& session, Configuration configuration)
      : session_(session), configuration_(std::move(configuration)) {}

  /// `query` is the request's body. The response is judged by its body, whatever its status.
  void chats(const Json& query, Completion<ChatResult> completion) const;
  void models(Completion<std::vector<std::string>> completion) const;

  /// Reports each record of the stream, then ends once, with a failure if there was one. Nothing follows the end.
  void chatsStream(const Json& query, std::function<void(const ChatStreamResult&)> onResult,
                   std::function<void(std::optional<std::string> failure)> onEnd) const;

 private:
  HttpRequest request(const char* method, const char* path, const Json* body) const;
  template <class T>
  void perform(HttpRequest request, T (*decode)(const Json&), Completion<T> completion) const;

  HttpSession& session_;
  Configuration configuration_;
};

}  // namespace quillmark
