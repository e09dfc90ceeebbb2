#include "platform/posix/CurlHttpSession.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <exception>
#include <filesystem>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "base/Log.h"
#include "base/Text.h"

namespace quillmark {
namespace {

constexpr long redirectLimit = 20;
constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmedAscii(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  return first == text.npos ? std::string_view() : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string lowerAscii(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return result;
}

/// RFC 9110, 5.1: a field name is a token.
bool isFieldName(std::string_view name) {
  constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
  return !name.empty() && std::ranges::all_of(name, [&](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || marks.find(c) != marks.npos;
  });
}

/// RFC 9110, 5.5: these three end a field or hide what follows.
bool isFieldValue(std::string_view value) { return value.find_first_of(std::string_view("\r\n\0", 3)) == value.npos; }

std::optional<std::string> mimeTypeOf(std::string_view contentType) {
  auto type = lowerAscii(trimmedAscii(contentType.substr(0, contentType.find(';'))));
  return type.find('/') == type.npos ? std::nullopt : std::optional(std::move(type));
}

struct HandleDeleter {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using EasyHandle = std::unique_ptr<CURL, HandleDeleter>;
using HeaderList = std::unique_ptr<curl_slist, HandleDeleter>;

/// The host of a URL, with the port if it names one.
std::string hostOf(const std::string& url) {
  const std::unique_ptr<CURLU, HandleDeleter> parts(curl_url());
  std::string result;
  if (curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) {
    return result;
  }
  for (const auto& [part, prefix] : {std::pair{CURLUPART_HOST, ""}, {CURLUPART_PORT, ":"}}) {
    char* text = nullptr;
    if (curl_url_get(parts.get(), part, &text, 0) == CURLUE_OK) {
      result += prefix;
      result += text;
    }
    curl_free(text);
  }
  return result;
}

/// Whether OpenSSL can look an authority up here: under the hash of its name, as in "5ed36f99.0".
bool isHashedDirectory(const char* directory) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error)) {
    const auto name = entry->path().filename().string();
    if (name.size() == 10 && name.ends_with(".0") && name.find_first_not_of("0123456789abcdef") == name.size() - 2) {
      return true;
    }
  }
  return false;
}

/// One sentence for the user. `detail` is the library's own message, `url` the last one requested.
std::string describe(CURLcode code, const std::string& detail, const std::string& url) {
  switch (code) {
    case CURLE_COULDNT_CONNECT:
      return "Could not connect to the server " + hostOf(url) + ".";
    case CURLE_COULDNT_RESOLVE_HOST:
      return "No server with the name " + hostOf(url) + " could be found.";
    case CURLE_OPERATION_TIMEDOUT:
      return "The request timed out.";
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
      return "The network connection was lost.";
    case CURLE_TOO_MANY_REDIRECTS:
      return "The server redirected the request too many times.";
    case CURLE_UNSUPPORTED_PROTOCOL:
      return "The server redirected the request to an address that is not allowed.";
    case CURLE_PEER_FAILED_VERIFICATION:
      return "The identity of the server " + hostOf(url) + " could not be verified: " + detail + ".";
    case CURLE_SSL_CONNECT_ERROR:
      return "A secure connection to the server " + hostOf(url) + " could not be made: " + detail + ".";
    case CURLE_ABORTED_BY_CALLBACK:
      return "The server redirected the request to " + hostOf(url) + ", which must not get the key.";
    default:
      return detail + ".";
  }
}

}  // namespace

/// One request in flight. Once submitted it belongs to the session's thread.
class CurlHttpSession::Transfer {
 public:
  Transfer(CurlHttpSession& session, HttpRequest request, HttpHandlers handlers)
      : session_(session), request_(std::move(request)), handlers_(std::move(handlers)) {}

  /// Null when the request can't be sent; it has been completed then.
  CURL* prepare() {
    lastActivity_ = session_.options_.now();
    if (auto problem = configure()) {
      complete(HttpFailure{std::move(*problem)});
      return nullptr;
    }
    return easy_.get();
  }

  void complete(std::optional<HttpFailure> failure) {
    if (handlers_.onComplete) {
      call([&] { handlers_.onComplete(std::move(failure)); });
    }
  }

  HttpFailure failure(CURLcode code) const {
    return {describe(code, errorText_[0] == '\0' ? curl_easy_strerror(code) : errorText_.data(), effectiveUrl())};
  }

  /// The end of the transfer, as reported by the library.
  void finish(CURLcode code) { complete(code == CURLE_OK || isDropped_ ? std::nullopt : std::optional(failure(code))); }

  CURL* handle() const { return easy_.get(); }
  CurlHttpOptions::Clock::time_point deadline() const { return lastActivity_ + request_.patience; }

 private:
  /// Runs a handler unless the session is ending. No exception gets out: the caller is the library, which is C.
  template <class Call>
  void call(Call&& handler) noexcept {
    if (session_.stopping_) {
      return;
    }
    try {
      handler();
    } catch (const std::exception& error) {
      log("A handler of " + request_.url + " failed: " + error.what());
    } catch (...) {
      log("A handler of " + request_.url + " failed");
    }
  }

  /// The URL after any redirects.
  std::string effectiveUrl() const {
    const char* url = nullptr;
    curl_easy_getinfo(easy_.get(), CURLINFO_EFFECTIVE_URL, &url);
    return url == nullptr ? request_.url : url;
  }

  void touch() { lastActivity_ = session_.options_.now(); }

  template <class Value>
  void set(CURLoption option, Value value) {
    if (const auto code = curl_easy_setopt(easy_.get(), option, value); code != CURLE_OK && setupCode_ == CURLE_OK) {
      setupCode_ = code;
    }
  }

  std::optional<std::string> configure();
  std::optional<std::string> configureHeaders();
  bool isAtItsHost() const { return hostOf(effectiveUrl()) == hostOf(request_.url); }
  void onHeaderLine(std::string_view line);
  void onBody(std::string_view bytes);
  void onProgress(curl_off_t received, curl_off_t sent);

  CurlHttpSession& session_;
  HttpRequest request_;
  HttpHandlers handlers_;
  HeaderList headers_;
  EasyHandle easy_;  // destroyed before what it points to
  CURLcode setupCode_ = CURLE_OK;
  std::array<char, CURL_ERROR_SIZE> errorText_{};
  CurlHttpOptions::Clock::time_point lastActivity_{};
  curl_off_t received_ = 0;
  curl_off_t sent_ = 0;

  HttpResponseHead head_;  // of the header block that is arriving
  bool hasLocation_ = false;
  bool headDelivered_ = false;
  bool isDropped_ = false;
};

/// Nothing, or a sentence when the request can't be sent.
std::optional<std::string> CurlHttpSession::Transfer::configure() {
  const auto scheme = lowerAscii(request_.url.substr(0, request_.url.find(':')));
  if (scheme != "http" && scheme != "https") {
    return "The address is not one of the web: " + request_.url;
  }
  if (request_.method != "GET" && request_.method != "POST") {
    return "The method is not supported: " + request_.method;
  }
  if (auto problem = configureHeaders()) {
    return problem;
  }
  easy_.reset(curl_easy_init());
  if (!easy_) {
    return "The network is not available.";
  }
  set(CURLOPT_PRIVATE, this);
  set(CURLOPT_ERRORBUFFER, errorText_.data());
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_QUICK_EXIT, 1L);  // a name look-up in progress doesn't delay the end of the session
  set(CURLOPT_URL, request_.url.c_str());
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 1L);
  set(CURLOPT_MAXREDIRS, redirectLimit);
  set(CURLOPT_REDIR_PROTOCOLS_STR, scheme == "https" ? "https" : "http,https");  // never from https down to http
  set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  if (scheme == "https") {
    const auto& [bundle, directory] = session_.authorities();
    set(CURLOPT_CAINFO, bundle.empty() ? nullptr : bundle.c_str());
    set(CURLOPT_CAPATH, directory.empty() ? nullptr : directory.c_str());
  }
  set(CURLOPT_HTTPHEADER, headers_.get());
  if (std::ranges::any_of(request_.headers,
                          [](const auto& header) { return lowerAscii(header.name) == "x-api-key"; })) {
    // The library itself only withholds Authorization from other hosts.
    set(
        CURLOPT_PREREQFUNCTION, +[](void* self, char*, char*, int, int) {
          return static_cast<Transfer*>(self)->isAtItsHost() ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
        });
    set(CURLOPT_PREREQDATA, this);
  }
  // Decodes every coding the library knows. The Accept-Encoding header is the caller's.
  set(CURLOPT_ACCEPT_ENCODING, "");
  if (request_.method == "POST" || request_.body) {
    const std::string_view body = request_.body ? std::string_view(*request_.body) : std::string_view("");
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    set(CURLOPT_POSTFIELDS, body.data());
    if (request_.method == "GET") {
      set(CURLOPT_CUSTOMREQUEST, "GET");
    }
  }
  set(
      CURLOPT_HEADERFUNCTION, +[](char* data, std::size_t, std::size_t size, void* self) {
        static_cast<Transfer*>(self)->onHeaderLine({data, size});
        return static_cast<Transfer*>(self)->isDropped_ ? 0 : size;
      });
  set(CURLOPT_HEADERDATA, this);
  set(
      CURLOPT_WRITEFUNCTION, +[](char* data, std::size_t, std::size_t size, void* self) {
        static_cast<Transfer*>(self)->onBody({data, size});
        return static_cast<Transfer*>(self)->session_.stopping_ ? 0 : size;
      });
  set(CURLOPT_WRITEDATA, this);
  set(
      CURLOPT_XFERINFOFUNCTION, +[](void* self, curl_off_t, curl_off_t received, curl_off_t, curl_off_t sent) {
        static_cast<Transfer*>(self)->onProgress(received, sent);
        return 0;
      });
  set(CURLOPT_XFERINFODATA, this);
  set(CURLOPT_NOPROGRESS, 0L);
  return setupCode_ == CURLE_OK ? std::nullopt
                                : std::optional(describe(setupCode_, curl_easy_strerror(setupCode_), request_.url));
}

/// The caller's headers in order, with the library's own ones switched off where the caller gives none.
std::optional<std::string> CurlHttpSession::Transfer::configureHeaders() {
  const auto append = [this](const std::string& line) {
    if (curl_slist* longer = curl_slist_append(headers_.get(), line.c_str())) {
      static_cast<void>(headers_.release());
      headers_.reset(longer);
    }
  };
  std::vector<std::string> unwanted{"accept", "accept-encoding", "content-type", "expect", "user-agent"};
  for (const auto& [name, value] : request_.headers) {
    const auto content = trimmedAscii(value);  // blanks around a value are not part of it (RFC 9110, 5.5)
    if (!isFieldName(name) || !isFieldValue(content)) {
      return "The request has a header that can't be sent: " + name;
    }
    // An empty value is written with a semicolon; with a colon it would switch the header off.
    append(content.empty() ? name + ";" : name + ": " + std::string(content));
    std::erase(unwanted, lowerAscii(name));
  }
  for (const auto& name : unwanted) {
    append(name + ":");
  }
  return std::nullopt;
}

void CurlHttpSession::Transfer::onHeaderLine(std::string_view line) {
  touch();
  if (headDelivered_) {
    return;  // a trailer
  }
  if (line.starts_with("HTTP/")) {
    head_ = {};
    hasLocation_ = false;
    const auto code = trimmedAscii(line.substr(std::min(line.find(' '), line.size())));
    std::from_chars(code.data(), code.data() + code.size(), head_.status);
    return;
  }
  const auto field = trimmedAscii(line);
  if (field.empty()) {
    const bool isFinal = head_.status >= 200 && !(head_.status / 100 == 3 && hasLocation_);
    if (isFinal) {
      headDelivered_ = true;
      if (handlers_.onHead) {
        call([this] { isDropped_ = !handlers_.onHead(head_); });
      }
    }
    return;
  }
  const auto colon = std::min(field.find(':'), field.size());
  const auto name = lowerAscii(field.substr(0, colon));
  const auto value = trimmedAscii(field.substr(std::min(colon + 1, field.size())));
  if (name == "content-type") {
    head_.mimeType = mimeTypeOf(value);
  } else if (name == "location") {
    hasLocation_ = hasLocation_ || !value.empty();
  }
}

void CurlHttpSession::Transfer::onBody(std::string_view bytes) {
  touch();
  if (handlers_.onBytes && !bytes.empty()) {
    call([&] { handlers_.onBytes(std::string(bytes)); });
  }
}

void CurlHttpSession::Transfer::onProgress(curl_off_t received, curl_off_t sent) {
  if (received != received_ || sent != sent_) {
    received_ = received;
    sent_ = sent;
    touch();
  }
}

CurlHttpSession::CurlHttpSession() : CurlHttpSession(CurlHttpOptions{}) {}

CurlHttpSession::CurlHttpSession(CurlHttpOptions options) : options_(std::move(options)) {}

CurlHttpSession::~CurlHttpSession() { stop(); }

void CurlHttpSession::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    wake();
  }
  if (thread_.joinable()) {
    thread_.join();
  }
  takeSubmitted();
}

void CurlHttpSession::start(HttpRequest request, HttpHandlers handlers) {
  auto transfer = std::make_unique<Transfer>(*this, std::move(request), std::move(handlers));
  const std::lock_guard lock(mutex_);
  if (!stopping_) {
    submitted_.push_back(std::move(transfer));
    ensureRunning();
  }
}

void CurlHttpSession::warmUp() {
  const std::lock_guard lock(mutex_);
  if (!stopping_) {
    ensureRunning();
  }
}

/// To be called with the mutex held.
void CurlHttpSession::ensureRunning() {
  if (!std::exchange(running_, true)) {
    thread_ = std::thread([this] { run(); });
  } else {
    wake();
  }
}

/// To be called with the mutex held.
void CurlHttpSession::wake() {
  if (wakeable_ != nullptr) {
    curl_multi_wakeup(wakeable_);
  }
  refusing_.notify_one();
}

std::string CurlHttpSession::userAgentToken() const {
  return std::string("libcurl/") + curl_version_info(CURLVERSION_NOW)->version;
}

void CurlHttpSession::lookAtClock() {
  const std::lock_guard lock(mutex_);
  wake();
}

void CurlHttpSession::run() {
  // Signals belong to the main thread; the threads that look up names inherit this mask.
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);

  static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
  multi_ = initialized == CURLE_OK ? curl_multi_init() : nullptr;
  if (multi_ == nullptr) {
    refuseAll();
    return;
  }
  {
    const std::lock_guard lock(mutex_);
    wakeable_ = multi_;
  }
  while (!stopping_) {
    for (auto& transfer : takeSubmitted()) {
      begin(std::move(transfer));
    }
    int count = 0;
    curl_multi_perform(multi_, &count);
    finishDone();
    failOverdue();
    curl_multi_poll(multi_, nullptr, 0, millisecondsToNextDeadline(), nullptr);
  }
  {
    const std::lock_guard lock(mutex_);
    wakeable_ = nullptr;
  }
  for (const auto& transfer : active_) {
    curl_multi_remove_handle(multi_, transfer->handle());
  }
  active_.clear();
  curl_multi_cleanup(std::exchange(multi_, nullptr));
}

/// The thread's loop when the library can't be initialised for lack of memory or descriptors: every request fails.
void CurlHttpSession::refuseAll() {
  while (!stopping_) {
    for (const auto& transfer : takeSubmitted()) {
      transfer->complete(HttpFailure{"The network is not available."});
    }
    std::unique_lock lock(mutex_);
    refusing_.wait(lock, [this] { return stopping_ || !submitted_.empty(); });
  }
}

std::vector<std::unique_ptr<CurlHttpSession::Transfer>> CurlHttpSession::takeSubmitted() {
  const std::lock_guard lock(mutex_);
  return std::exchange(submitted_, {});
}

void CurlHttpSession::begin(std::unique_ptr<Transfer> transfer) {
  if (CURL* handle = transfer->prepare()) {
    curl_multi_add_handle(multi_, handle);
    active_.push_back(std::move(transfer));
  }
}

/// Removes the transfer from the library and from the list.
std::unique_ptr<CurlHttpSession::Transfer> CurlHttpSession::take(const Transfer* transfer) {
  const auto found = std::ranges::find(active_, transfer, [](const auto& each) { return each.get(); });
  auto taken = std::move(*found);
  active_.erase(found);
  curl_multi_remove_handle(multi_, taken->handle());
  return taken;
}

void CurlHttpSession::finishDone() {
  int remaining = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &remaining)) {
    if (message->msg != CURLMSG_DONE) {
      continue;
    }
    const CURLcode code = message->data.result;
    Transfer* finished = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &finished);
    const auto transfer = take(finished);
    transfer->finish(code);
  }
}

void CurlHttpSession::failOverdue() {
  if (active_.empty()) {
    return;
  }
  const auto now = options_.now();
  std::vector<const Transfer*> overdue;
  for (const auto& transfer : active_) {
    if (transfer->deadline() <= now) {
      overdue.push_back(transfer.get());
    }
  }
  for (const auto* transfer : overdue) {
    const auto failed = take(transfer);
    failed->complete(failed->failure(CURLE_OPERATION_TIMEDOUT));
  }
}

/// With both defaults set, the library reads the whole bundle for each new connection, which takes longer than the rest
/// of a request. From a directory it reads only the authority it needs; a bundle alone is cached.
const CurlHttpSession::Authorities& CurlHttpSession::authorities() {
  if (!authorities_) {
    const auto* library = curl_version_info(CURLVERSION_NOW);
    if (!options_.caBundle.empty()) {
      authorities_ = {options_.caBundle, ""};
    } else if (library->capath != nullptr && isHashedDirectory(library->capath)) {
      authorities_ = {"", library->capath};
    } else {
      authorities_ = {library->cainfo == nullptr ? "" : library->cainfo, ""};
    }
  }
  return *authorities_;
}

/// With nothing in flight, as long as the library accepts: it can be woken at any time.
int CurlHttpSession::millisecondsToNextDeadline() const {
  constexpr auto forever = std::chrono::milliseconds(std::numeric_limits<int>::max());
  auto wait = forever;
  if (!active_.empty()) {
    const auto now = options_.now();
    for (const auto& transfer : active_) {
      wait = std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(transfer->deadline() - now));
    }
  }
  return static_cast<int>(std::clamp(wait, std::chrono::milliseconds(0), forever).count());
}

}  // namespace quillmark
