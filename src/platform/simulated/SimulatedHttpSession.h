#pragma once

#include <deque>
#include <functional>
#include <string>

#include "platform/HttpSession.h"

namespace quillmark {

/// A network in which a test plays every server. Handlers run inside the call that triggers them.
class SimulatedHttpSession : public HttpSession {
 public:
  /// One request that was sent, and the test's side of its connection.
  struct Exchange {
    HttpRequest request;
    HttpHandlers handlers;

    std::string header(const std::string& name) const;
    /// False when the program drops the transfer; its end must come next.
    bool head(int status, std::optional<std::string> mimeType) const {
      return handlers.onHead({status, std::move(mimeType)});
    }
    void bytes(const std::string& bytes) const { handlers.onBytes(bytes); }
    void end() const { handlers.onComplete(std::nullopt); }
    void fail(const std::string& description) const { handlers.onComplete(HttpFailure{description}); }

    void answer(int status, std::optional<std::string> mimeType, const std::string& body) const;
    void answerJson(const std::string& body) const { answer(200, "application/json", body); }
  };

  void start(HttpRequest request, HttpHandlers handlers) override;
  std::string userAgentToken() const override { return "simulated/1.0"; }

  std::deque<Exchange> exchanges;  ///< in order; references stay valid
  /// Called for each request at once, where a test wants every request answered in one way.
  std::function<void(const Exchange&)> onRequest;
};

}  // namespace quillmark
