#include "local-service/Upstream.h"

#include <ctime>
#include <stdexcept>

#include <httplib.h>

#include "base/Text.h"

namespace quillmark::service {
namespace {

constexpr time_t connectSeconds = 10;
constexpr time_t silenceSeconds = 300;

bool isSuccess(int status) { return status >= 200 && status < 300; }

std::string stringAt(const Json& value, const char* key) {
  const auto found = value.is_object() ? value.find(key) : value.end();
  return value.is_object() && found != value.end() && found->is_string() ? found->get<std::string>() : std::string();
}

/// The text of the first choice's `part` ("delta" or "message"), or nothing.
std::string choiceText(const Json& answer, const char* part) {
  if (!answer.is_object() || !answer.contains("choices") || !answer["choices"].is_array() ||
      answer["choices"].empty()) {
    return {};
  }
  const auto& choice = answer["choices"].front();
  return choice.is_object() && choice.contains(part) ? stringAt(choice[part], "content") : std::string();
}

std::string failureMessage(const httplib::Error& error) { return "upstream: " + httplib::to_string(error); }

}  // namespace

std::string errorBody(const std::string& message) { return toText(Json{{"error", {{"message", message}}}}); }

std::string EventStreamReader::take(std::string_view bytes) {
  rest_ += bytes;
  std::string text;
  std::size_t start = 0;
  for (auto end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n', start)) {
    const auto line = std::string_view(rest_).substr(start, end - start);
    start = end + 1;
    if (line.starts_with("data:")) {
      text += choiceText(Json::parse(text::trimmed(line.substr(5)), nullptr, false), "delta");
    }
  }
  rest_.erase(0, start);
  return text;
}

/// A client for one exchange, known to the upstream while it lives, so that stop() reaches it.
class Upstream::Call {
 public:
  explicit Call(Upstream& upstream) : upstream_(upstream), client_(upstream.host_) {
    client_.set_connection_timeout(connectSeconds);
    client_.set_read_timeout(silenceSeconds);
    client_.set_tcp_nodelay(true);
    const std::lock_guard lock(upstream_.mutex_);
    upstream_.calls_.insert(&client_);
    tooLate_ = upstream_.stopping_;
  }
  ~Call() {
    const std::lock_guard lock(upstream_.mutex_);
    upstream_.calls_.erase(&client_);
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  httplib::Client& client() { return client_; }
  /// Whether the upstream was stopped before this exchange was registered with it.
  bool tooLate() const { return tooLate_; }

  httplib::Request request(const std::string& method, const std::string& path, const std::string& body) const {
    httplib::Request request;
    request.method = method;
    request.path = upstream_.path_ + path;
    request.body = body;
    request.set_header("Accept", "application/json, text/event-stream");
    if (!body.empty()) {
      request.set_header("Content-Type", "application/json");
    }
    if (!upstream_.settings_.key.empty()) {
      request.set_header("Authorization", "Bearer " + upstream_.settings_.key);
    }
    return request;
  }

 private:
  Upstream& upstream_;
  httplib::Client client_;
  bool tooLate_ = false;
};

Upstream::Upstream(Settings settings) : settings_(std::move(settings)) {
  const auto scheme = settings_.baseUrl.find("://");
  if (!settings_.baseUrl.starts_with("http://") && !settings_.baseUrl.starts_with("https://")) {
    throw std::invalid_argument("the upstream is no http or https URL: " + settings_.baseUrl);
  }
  const auto slash = settings_.baseUrl.find('/', scheme + 3);
  host_ = settings_.baseUrl.substr(0, slash);
  path_ = slash == std::string::npos ? std::string() : settings_.baseUrl.substr(slash);
  while (path_.ends_with('/')) {
    path_.pop_back();
  }
}

Upstream::~Upstream() { stop(); }

void Upstream::stop() {
  const std::lock_guard lock(mutex_);
  stopping_ = true;
  for (auto* client : calls_) {
    client->stop();
  }
}

Upstream::Answer Upstream::exchange(const std::string& method, const std::string& path, const std::string& body) {
  Call call(*this);
  if (call.tooLate()) {
    return {503, errorBody("the service is stopping")};
  }
  const auto result = call.client().send(call.request(method, path, body));
  if (!result) {
    return {502, errorBody(failureMessage(result.error()))};
  }
  return {result->status, result->body};
}

Upstream::Answer Upstream::complete(const Json& request) {
  Json body = request;
  body["stream"] = false;
  if (!settings_.model.empty()) {
    body["model"] = settings_.model;
  }
  auto answer = exchange("POST", "/chat/completions", toText(body));
  if (!isSuccess(answer.status)) {
    return answer;
  }
  Json json = Json::parse(answer.body, nullptr, false);
  if (!json.is_object()) {
    return {502, errorBody("upstream: the answer is no JSON object")};
  }
  // Some servers leave out fields that readers of the service rely on.
  const auto fill = [&json](const char* key, Json value) {
    if (!json.contains(key) || json[key].is_null()) {
      json[key] = std::move(value);
    }
  };
  fill("model", body.value("model", ""));
  fill("object", "chat.completion");
  fill("created", std::time(nullptr));
  return {answer.status, toText(json)};
}

Upstream::Answer Upstream::models() {
  if (settings_.model.empty()) {
    return exchange("GET", "/models", "");
  }
  return {200, toText(Json{{"data", Json::array({{{"id", settings_.model}, {"name", settings_.model}}})}})};
}

std::shared_ptr<Upstream::Stream> Upstream::stream(const Json& request) {
  Json body = request;
  body["stream"] = true;
  if (!settings_.model.empty()) {
    body["model"] = settings_.model;
  }
  return std::make_shared<Stream>(*this, body);
}

Upstream::Stream::Stream(Upstream& upstream, const Json& request)
    : thread_([this, &upstream, body = toText(request)] { run(upstream, body); }) {}

Upstream::Stream::~Stream() {
  {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
    if (client_ != nullptr) {
      client_->stop();
    }
  }
  thread_.join();
}

int Upstream::Stream::status() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return status_ && (isSuccess(*status_) || ended_); });
  return *status_;
}

std::string Upstream::Stream::error() {
  const std::lock_guard lock(mutex_);
  return error_;
}

std::optional<std::string> Upstream::Stream::next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return !texts_.empty() || ended_; });
  if (texts_.empty()) {
    return std::nullopt;
  }
  auto text = std::move(texts_.front());
  texts_.pop_front();
  return text;
}

void Upstream::Stream::run(Upstream& upstream, const std::string& body) {
  Call call(upstream);
  {
    const std::lock_guard lock(mutex_);
    if (call.tooLate()) {
      status_ = 503;
      error_ = errorBody("the service is stopping");
      ended_ = true;
      changed_.notify_all();
      return;
    }
    client_ = &call.client();
  }
  EventStreamReader events;
  std::string whole;  // an answer that is not an event stream
  bool isEventStream = false;
  int status = 0;

  auto request = call.request("POST", "/chat/completions", body);
  request.response_handler = [&](const httplib::Response& response) {
    const std::lock_guard lock(mutex_);
    status = response.status;
    status_ = status;
    isEventStream = isSuccess(status) && !response.get_header_value("Content-Type").starts_with("application/json");
    changed_.notify_all();
    return !cancelled_;
  };
  request.content_receiver = [&](const char* data, std::size_t size, std::uint64_t, std::uint64_t) {
    const std::string_view bytes(data, size);
    auto text = isEventStream ? events.take(bytes) : std::string();
    const std::lock_guard lock(mutex_);
    if (!isEventStream) {
      whole += bytes;
    } else if (!text.empty()) {
      texts_.push_back(std::move(text));
      changed_.notify_all();
    }
    return !cancelled_;
  };
  const auto result = call.client().send(request);

  const std::lock_guard lock(mutex_);
  client_ = nullptr;
  if (status == 0) {
    status_ = 502;
    error_ = errorBody(failureMessage(result.error()));
  } else if (!isSuccess(status)) {
    error_ = whole;
  } else if (!isEventStream) {
    texts_.push_back(choiceText(Json::parse(whole, nullptr, false), "message"));
  } else if (auto text = events.take("\n"); !text.empty()) {
    texts_.push_back(std::move(text));
  }
  ended_ = true;
  changed_.notify_all();
}

}  // namespace quillmark::service
