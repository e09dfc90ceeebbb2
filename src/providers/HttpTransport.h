#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Expected.h"
#include "base/Json.h"
#include "platform/Bundle.h"
#include "platform/HttpSession.h"
#include "platform/LocaleInfo.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// Why a request failed, in the words the user sees.
struct TransportError {
  std::string description;

  static TransportError invalidUrl(const std::string& url);
  static TransportError sessionFailed(const std::string& description);
  static TransportError unacceptableStatus(int status);
  static TransportError missingContentType(const std::vector<std::string>& acceptable);
  static TransportError unacceptableContentType(const std::string& type, const std::vector<std::string>& acceptable);
  static TransportError emptyBody();
  static TransportError emptyBodyOfType(const std::string& typeName);
  static TransportError undecodable(const std::string& problem);
};

struct TransportRequest {
  std::string method;  ///< "GET" or "POST"
  std::string url;
  std::vector<HttpHeader> headers;
  std::optional<Json> body;  ///< adds Content-Type "application/json" unless the headers have one
};

/// All HTTP traffic of the system except that of the two vendors' own client layers: JSON requests whose response is
/// validated and decoded, and text streams. There are no retries, no caching and no cancellation. Callbacks arrive on
/// the main thread.
class HttpTransport {
 public:
  HttpTransport(HttpSession& session, MainQueue& queue, const Bundle& bundle, const OperatingSystem& system,
                const LocaleInfo& locale);

  /// `decode` turns the body into a record and throws DecodingError; it is a pure function and runs off the main
  /// thread. `typeName` is the record's name in error messages.
  template <class T>
  void send(TransportRequest request, const std::string& typeName, std::function<T(const Json&)> decode,
            std::function<void(Expected<T, TransportError>)> completion) {
    sendForBody(std::move(request), typeName,
                [decode = std::move(decode),
                 completion = std::move(completion)](Expected<std::string, TransportError> body) -> MainQueue::Block {
                  auto result = std::make_shared<Expected<T, TransportError>>(decodeBody<T>(std::move(body), decode));
                  return [result, completion] { completion(std::move(*result)); };
                });
  }

  /// Calls `onChunk` for each delivery of the network, as text with invalid UTF-8 replaced; then `onComplete` once. The
  /// response is not validated before its chunks are delivered.
  void stream(TransportRequest request, std::function<void(std::string)> onChunk,
              std::function<void(std::optional<TransportError>)> onComplete);

  /// The headers that every request carries besides its own.
  static std::vector<HttpHeader> sessionHeaders(const Bundle& bundle, const OperatingSystem& system,
                                                const std::vector<std::string>& languages,
                                                const std::string& httpLayer);

  /// Nothing when the response is acceptable for a request with this Accept value.
  static std::optional<TransportError> validate(const HttpResponseHead& head, bool bodyIsEmpty,
                                                const std::optional<std::string>& accept);

 private:
  /// Takes the validated body off the main thread and returns the block that calls back on the main thread.
  using BodyHandler = std::function<MainQueue::Block(Expected<std::string, TransportError>)>;

  template <class T>
  static Expected<T, TransportError> decodeBody(Expected<std::string, TransportError> body,
                                                const std::function<T(const Json&)>& decode) {
    if (!body) {
      return unexpected(std::move(body.error()));
    }
    try {
      return decode(parseJson(*body));
    } catch (const DecodingError& error) {
      return unexpected(TransportError::undecodable(error.what()));
    }
  }

  void sendForBody(TransportRequest request, const std::string& typeName, BodyHandler handler);
  HttpRequest prepare(TransportRequest request) const;

  HttpSession& session_;
  MainQueue& queue_;
  std::vector<HttpHeader> sessionHeaders_;
};

/// Whether the text is syntactically a URL (RFC 3986).
bool isValidUrl(const std::string& url);

}  // namespace quillmark
