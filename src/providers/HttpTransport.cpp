#include "providers/HttpTransport.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "base/Text.h"
#include "base/Trace.h"
#include "platform/HttpResponse.h"

namespace quillmark {
namespace {

/// "a;q=1.0, b;q=0.9": the order of preference as quality values (RFC 9110, section 12.4.2).
std::string qualityList(const std::vector<std::string>& entries) {
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    parts.push_back(entries[i] + ";q=" + text::oneDecimal(10 - static_cast<int>(i)));
  }
  return text::joined(parts, ", ");
}

std::optional<std::string> headerValue(const std::vector<HttpHeader>& headers, std::string_view name) {
  for (const auto& header : headers) {
    if (text::lowerCased(header.name) == name) {
      return header.value;
    }
  }
  return std::nullopt;
}

/// A media type without parameters and blanks.
std::pair<std::string, std::string> typeAndSubtype(std::string_view mime) {
  const auto plain = text::lowerCased(text::trimmed(mime.substr(0, mime.find(';'))));
  const auto slash = plain.find('/');
  return slash == std::string::npos ? std::pair(plain, std::string())
                                    : std::pair(plain.substr(0, slash), plain.substr(slash + 1));
}

bool matches(const std::pair<std::string, std::string>& acceptable, const std::pair<std::string, std::string>& type) {
  const auto fits = [](const std::string& wanted, const std::string& given) {
    return wanted == "*" || given == "*" || wanted == given;
  };
  return fits(acceptable.first, type.first) && fits(acceptable.second, type.second);
}

}  // namespace

TransportError TransportError::invalidUrl(const std::string& url) { return {"URL is not valid: " + url}; }

TransportError TransportError::sessionFailed(const std::string& description) {
  return {"URLSessionTask failed with error: " + description};
}

TransportError TransportError::unacceptableStatus(int status) {
  return {"Response status code was unacceptable: " + std::to_string(status) + "."};
}

TransportError TransportError::missingContentType(const std::vector<std::string>& acceptable) {
  return {"Response Content-Type was missing and acceptable content types (" + text::joined(acceptable, ",") +
          ") do not match \"*/*\"."};
}

TransportError TransportError::unacceptableContentType(const std::string& type,
                                                       const std::vector<std::string>& acceptable) {
  return {"Response Content-Type \"" + type +
          "\" does not match any acceptable types: " + text::joined(acceptable, ",") + "."};
}

TransportError TransportError::emptyBody() {
  return {"Response could not be serialized, input data was nil or zero length."};
}

TransportError TransportError::emptyBodyOfType(const std::string& typeName) {
  return {"Empty response could not be serialized to type: " + typeName +
          ". Use Empty as the expected type for such responses."};
}

TransportError TransportError::undecodable(const std::string& problem) {
  return {"Response could not be decoded because of error:\n" + problem};
}

HttpTransport::HttpTransport(HttpSession& session, MainQueue& queue, const Bundle& bundle,
                             const OperatingSystem& system, const LocaleInfo& locale)
    : session_(session),
      queue_(queue),
      sessionHeaders_(sessionHeaders(bundle, system, locale.preferredLanguages(), session.userAgentToken())) {}

std::vector<HttpHeader> HttpTransport::sessionHeaders(const Bundle& bundle, const OperatingSystem& system,
                                                      const std::vector<std::string>& languages,
                                                      const std::string& httpLayer) {
  const auto known = [](const std::optional<std::string>& value) { return value.value_or("Unknown"); };
  const std::vector<std::string> firstLanguages(languages.begin(),
                                                languages.begin() + std::min<std::ptrdiff_t>(6, std::ssize(languages)));
  return {
      {"Accept-Encoding", qualityList({"br", "gzip", "deflate"})},
      {"Accept-Language", qualityList(firstLanguages)},
      {"User-Agent", known(bundle.executableName) + "/" + known(bundle.shortVersion) + " (" + known(bundle.identifier) +
                         "; build:" + known(bundle.buildNumber) + "; " + system.versionString() + ") " + httpLayer},
  };
}

std::optional<TransportError> HttpTransport::validate(const HttpResponseHead& head, bool bodyIsEmpty,
                                                      const std::optional<std::string>& accept) {
  if (head.status < 200 || head.status > 299) {
    return TransportError::unacceptableStatus(head.status);
  }
  if (bodyIsEmpty) {
    return std::nullopt;
  }
  const std::string accepted = accept.value_or("*/*");
  std::vector<std::string> acceptable;
  for (const auto piece : text::split(accepted, ',')) {
    acceptable.emplace_back(piece);
  }
  if (head.mimeType) {
    const auto type = typeAndSubtype(*head.mimeType);
    const bool fits = std::any_of(acceptable.begin(), acceptable.end(),
                                  [&](const auto& candidate) { return matches(typeAndSubtype(candidate), type); });
    return fits ? std::nullopt : std::optional(TransportError::unacceptableContentType(*head.mimeType, acceptable));
  }
  const bool anything = std::any_of(acceptable.begin(), acceptable.end(), [](const auto& candidate) {
    return typeAndSubtype(candidate) == std::pair<std::string, std::string>("*", "*");
  });
  return anything ? std::nullopt : std::optional(TransportError::missingContentType(acceptable));
}

HttpRequest HttpTransport::prepare(TransportRequest request) const {
  HttpRequest result{std::move(request.method), std::move(request.url), std::move(request.headers), std::nullopt};
  if (request.body) {
    result.body = toText(*request.body);
    if (!headerValue(result.headers, "content-type")) {
      result.headers.push_back({"Content-Type", "application/json"});
    }
  }
  for (const auto& header : sessionHeaders_) {
    if (!headerValue(result.headers, text::lowerCased(header.name))) {
      result.headers.push_back(header);
    }
  }
  return result;
}

void HttpTransport::sendForBody(TransportRequest request, const std::string& typeName, BodyHandler handler) {
  if (!isValidUrl(request.url)) {
    queue_.async(handler(unexpected(TransportError::invalidUrl(request.url))));
    return;
  }
  HttpRequest prepared = prepare(std::move(request));
  auto judge = [typeName, accept = headerValue(prepared.headers, "accept")](
                   Expected<HttpResponse, HttpFailure> response) -> Expected<std::string, TransportError> {
    if (!response) {
      return unexpected(TransportError::sessionFailed(response.error().description));
    }
    if (auto refused = validate(response->head, response->body.empty(), accept)) {
      return unexpected(std::move(*refused));
    }
    if (response->body.empty()) {
      const bool mayBeEmpty = response->head.status == 204 || response->head.status == 205;
      return unexpected(mayBeEmpty ? TransportError::emptyBodyOfType(typeName) : TransportError::emptyBody());
    }
    return std::move(response->body);
  };
  fetch(session_, std::move(prepared),
        [&queue = queue_, judge = std::move(judge),
         handler = std::move(handler)](Expected<HttpResponse, HttpFailure> response) {
          trace::mark(trace::answerReceived);
          queue.async(handler(judge(std::move(response))));
        });
}

void HttpTransport::stream(TransportRequest request, std::function<void(std::string)> onChunk,
                           std::function<void(std::optional<TransportError>)> onComplete) {
  if (!isValidUrl(request.url)) {
    queue_.async([onComplete = std::move(onComplete), url = std::move(request.url)] {
      onComplete(TransportError::invalidUrl(url));
    });
    return;
  }
  HttpRequest prepared = prepare(std::move(request));
  const auto head = std::make_shared<HttpResponseHead>();
  const auto anyBytes = std::make_shared<bool>(false);
  // The chunks of one stream share the callback: copying it for each would cost more than the chunk.
  const auto sharedOnChunk = std::make_shared<const std::function<void(std::string)>>(std::move(onChunk));

  HttpHandlers handlers;
  handlers.onHead = [head](const HttpResponseHead& received) {
    *head = received;
    return true;
  };
  handlers.onBytes = [&queue = queue_, sharedOnChunk, anyBytes](const std::string& bytes) {
    *anyBytes = true;
    queue.async([sharedOnChunk, chunk = text::decodeUtf8(bytes)] { (*sharedOnChunk)(chunk); });
  };
  handlers.onComplete = [&queue = queue_, onComplete = std::move(onComplete), head, anyBytes,
                         accept = headerValue(prepared.headers, "accept")](const std::optional<HttpFailure>& failure) {
    trace::mark(trace::answerReceived);
    auto error = failure ? std::optional(TransportError::sessionFailed(failure->description))
                         : validate(*head, !*anyBytes, accept);
    queue.async([onComplete, error = std::move(error)] { onComplete(error); });
  };
  session_.start(std::move(prepared), std::move(handlers));
}

bool isValidUrl(const std::string& url) {
  constexpr std::string_view punctuation = "-._~:/?#[]@!$&'()*+,;=";
  for (std::size_t i = 0; i < url.size(); ++i) {
    const auto c = static_cast<unsigned char>(url[i]);
    if (c == '%') {
      if (i + 2 >= url.size() || std::isxdigit(static_cast<unsigned char>(url[i + 1])) == 0 ||
          std::isxdigit(static_cast<unsigned char>(url[i + 2])) == 0) {
        return false;
      }
    } else if (c >= 0x80 || (std::isalnum(c) == 0 && punctuation.find(static_cast<char>(c)) == std::string::npos)) {
      return false;
    }
  }
  return !url.empty();
}

}  // namespace quillmark
