#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

struct HttpHeader {
  std::string name;
  std::string value;
  friend bool operator==(const HttpHeader&, const HttpHeader&) = default;
};

struct HttpRequest {
  std::string method;  ///< "GET" or "POST"
  std::string url;
  std::vector<HttpHeader> headers;  ///< sent in this order; a header that the session adds never replaces one
  std::optional<std::string> body;
  std::chrono::seconds patience{
      60};  ///< how long the request may go without a byte in either direction before it fails
};

struct HttpResponseHead {
  int status = 0;
  std::optional<std::string> mimeType;  ///< "type/subtype" in lower case, without parameters
};

/// The connection or the protocol failed; the message is the system's.
struct HttpFailure {
  std::string description;
};

/// Called for one request on the session's own thread, in this order: the head once, the bytes of the body as they
/// arrive (content codings undone), the end once. A failed request may skip the first two.
struct HttpHandlers {
  /// Returning false drops the transfer: the end follows, without a failure.
  std::function<bool(const HttpResponseHead&)> onHead;
  std::function<void(std::string)> onBytes;
  std::function<void(std::optional<HttpFailure>)> onComplete;
};

/// Sends requests. Redirects are followed, and TLS certificates are always verified. Nothing is retried.
class HttpSession {
 public:
  HttpSession() = default;
  HttpSession(const HttpSession&) = delete;
  HttpSession& operator=(const HttpSession&) = delete;
  virtual ~HttpSession() = default;

  /// Returns at once. Any thread.
  virtual void start(HttpRequest request, HttpHandlers handlers) = 0;

  /// Name and version of the HTTP layer as a User-Agent token, such as "libcurl/7.88.1".
  virtual std::string userAgentToken() const = 0;
};

}  // namespace quillmark
