#include "support/TestHttpServer.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quillmark {
namespace {

using namespace std::chrono_literals;

/// Long enough for any machine: a wait ends early unless something is broken.
constexpr auto patience = 30s;

bool sendAll(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

/// Reads one request from the connection; `buffer` keeps surplus bytes. Nothing when the peer has closed it.
std::optional<ReceivedRequest> receive(int socket, std::string& buffer) {
  const auto fill = [&] {
    char piece[16384];
    const auto size = ::recv(socket, piece, sizeof piece, 0);
    if (size > 0) {
      buffer.append(piece, static_cast<std::size_t>(size));
    }
    return size > 0;
  };
  std::size_t headEnd = 0;
  while ((headEnd = buffer.find("\r\n\r\n")) == buffer.npos) {
    if (!fill()) {
      return std::nullopt;
    }
  }
  headEnd += 4;
  ReceivedRequest request{.text = buffer.substr(0, headEnd)};
  std::istringstream(request.text) >> request.method >> request.target;
  const std::size_t length = std::stoul(request.header("Content-Length").value_or("0"));
  while (buffer.size() < headEnd + length) {
    if (!fill()) {
      return std::nullopt;
    }
  }
  request.body = buffer.substr(headEnd, length);
  request.text = buffer.substr(0, headEnd + length);
  buffer.erase(0, headEnd + length);
  return request;
}

}  // namespace

void Gate::open() const {
  {
    const std::lock_guard lock(state_->mutex);
    state_->isOpen = true;
  }
  state_->changed.notify_all();
}

bool Gate::waitUntilReached() const {
  std::unique_lock lock(state_->mutex);
  return state_->changed.wait_for(lock, patience, [this] { return state_->isReached; });
}

void Gate::pass() const {
  std::unique_lock lock(state_->mutex);
  state_->isReached = true;
  state_->changed.notify_all();
  state_->changed.wait(lock, [this] { return state_->isOpen; });
}

Answer Answer::raw(std::string bytes) { return Answer().send(std::move(bytes)); }

Answer Answer::json(int status, std::string body) {
  return withBody(status, std::move(body), {"Content-Type: application/json"});
}

Answer Answer::withBody(int status, std::string body, const std::vector<std::string>& headerLines) {
  std::string head = "HTTP/1.1 " + std::to_string(status) + " Answer\r\n";
  for (const auto& line : headerLines) {
    head += line + "\r\n";
  }
  head += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
  return raw(head + body);
}

Answer Answer::eventStream() {
  return raw("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nTransfer-Encoding: chunked\r\n\r\n");
}

Answer&& Answer::send(std::string bytes) && {
  steps_.emplace_back(std::move(bytes));
  return std::move(*this);
}

Answer&& Answer::chunk(std::string_view body) && {
  char size[20];
  std::snprintf(size, sizeof size, "%zx\r\n", body.size());
  return std::move(*this).send(std::string(size).append(body).append("\r\n"));
}

Answer&& Answer::end() && { return std::move(*this).send("0\r\n\r\n"); }

Answer&& Answer::waitFor(const Gate& gate) && {
  steps_.emplace_back(gate);
  return std::move(*this);
}

Answer&& Answer::close() && {
  steps_.emplace_back(Ending::close);
  return std::move(*this);
}

Answer&& Answer::reset() && {
  steps_.emplace_back(Ending::reset);
  return std::move(*this);
}

std::optional<std::string> ReceivedRequest::header(std::string_view name) const {
  const auto line = "\r\n" + std::string(name) + ": ";
  const auto at = text.find(line);
  if (at > text.find("\r\n\r\n")) {
    return std::nullopt;
  }
  const auto value = at + line.size();
  return text.substr(value, text.find("\r\n", value) - value);
}

TestHttpServer::TestHttpServer() {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (listener_ < 0 || bind(listener_, any, size) != 0 || getsockname(listener_, any, &size) != 0 ||
      listen(listener_, 64) != 0) {
    throw std::runtime_error(std::string("can't listen: ") + std::strerror(errno));
  }
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { acceptAll(); });
}

TestHttpServer::~TestHttpServer() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (const auto& gate : gates_) {
      gate.open();
    }
    for (const int socket : sockets_) {
      shutdown(socket, SHUT_RDWR);
    }
  }
  shutdown(listener_, SHUT_RDWR);  // ends the pending accept
  acceptor_.join();
  for (auto& connection : connections_) {
    connection.join();
  }
  ::close(listener_);
}

std::string TestHttpServer::url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

void TestHttpServer::answer(Answer answer) {
  const std::lock_guard lock(mutex_);
  scripted_.push_back(std::move(answer));
}

void TestHttpServer::answerOthers(std::function<Answer(const ReceivedRequest&)> responder) {
  const std::lock_guard lock(mutex_);
  responder_ = std::move(responder);
}

std::vector<ReceivedRequest> TestHttpServer::waitForRequests(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, patience, [&] { return requests_.size() >= count; });
  return requests_;
}

bool TestHttpServer::waitForHangUps(int count) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, patience, [&] { return hangUps_ >= count; });
}

void TestHttpServer::acceptAll() {
  for (int connection = 1;; ++connection) {
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex_);
    if (socket < 0 || stopping_) {
      if (socket >= 0) {
        ::close(socket);
      }
      return;
    }
    const int atOnce = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
    sockets_.push_back(socket);
    connections_.emplace_back([this, socket, connection] { serve(socket, connection); });
  }
}

void TestHttpServer::serve(int socket, int connection) {
  std::string buffer;
  bool hungUp = true;
  while (auto request = receive(socket, buffer)) {
    request->connection = connection;
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(*request);
    }
    changed_.notify_all();
    if (!play(socket, nextAnswer(*request))) {
      hungUp = false;
      break;
    }
  }
  {
    const std::lock_guard lock(mutex_);
    hangUps_ += hungUp ? 1 : 0;
    std::erase(sockets_, socket);
    ::close(socket);
  }
  changed_.notify_all();
}

Answer TestHttpServer::nextAnswer(const ReceivedRequest& request) {
  Answer answer = Answer::json(404, R"({"error":"this test expects no such request"})");
  std::function<Answer(const ReceivedRequest&)> responder;
  {
    const std::lock_guard lock(mutex_);
    if (nextScripted_ < scripted_.size()) {
      answer = scripted_[nextScripted_++];
    } else {
      responder = responder_;
    }
  }
  if (responder) {
    answer = responder(request);
  }
  const std::lock_guard lock(mutex_);
  for (const auto& step : answer.steps_) {
    if (const auto* gate = std::get_if<Gate>(&step)) {
      gates_.push_back(*gate);
      if (stopping_) {
        gate->open();
      }
    }
  }
  return answer;
}

/// False when the answer ended the connection.
bool TestHttpServer::play(int socket, const Answer& answer) {
  for (const auto& step : answer.steps_) {
    if (const auto* bytes = std::get_if<std::string>(&step)) {
      if (!sendAll(socket, *bytes)) {
        return true;  // the peer has closed the connection; the next read finds out too
      }
    } else if (const auto* gate = std::get_if<Gate>(&step)) {
      gate->pass();
    } else {
      if (std::get<Answer::Ending>(step) == Answer::Ending::reset) {
        const linger atOnce{1, 0};
        setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
      }
      return false;
    }
  }
  return true;
}

}  // namespace quillmark
