#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

namespace quillmark {

/// A point in an answer at which the server waits until the test opens it. Copies are the same gate.
class Gate {
 public:
  Gate() : state_(std::make_shared<State>()) {}

  void open() const;
  /// Returns when the server is waiting at the gate, with everything before it sent; false after a long wait.
  [[nodiscard]] bool waitUntilReached() const;

 private:
  friend class TestHttpServer;
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    bool isOpen = false;
    bool isReached = false;
  };
  void pass() const;

  std::shared_ptr<State> state_;
};

/// What the server does about one request, step by step. Each piece is sent in a write of its own.
///
///     Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab").waitFor(gate).send("cd")
///     Answer::json(200, R"({"data":[]})")
///     Answer::eventStream().chunk("data: one\n\n").waitFor(gate).chunk("data: [DONE]\n\n").end()
///
/// The connection stays open for the next request unless the answer closes it.
class Answer {
 public:
  static Answer raw(std::string bytes);
  static Answer json(int status, std::string body);
  /// Any body with its length and the header lines given, each without its line end.
  static Answer withBody(int status, std::string body, const std::vector<std::string>& headerLines);
  /// The head of a chunked text/event-stream; continue with chunk() and end().
  static Answer eventStream();

  Answer&& send(std::string bytes) &&;
  /// One chunk of a chunked body (RFC 9112, 7.1).
  Answer&& chunk(std::string_view body) &&;
  /// The last chunk.
  Answer&& end() &&;
  Answer&& waitFor(const Gate& gate) &&;
  /// Closes the connection in an orderly way.
  Answer&& close() &&;
  /// Aborts the connection: the peer gets a reset.
  Answer&& reset() &&;

 private:
  friend class TestHttpServer;
  enum class Ending { close, reset };
  std::vector<std::variant<std::string, Gate, Ending>> steps_;
};

/// A request as it was on the wire.
struct ReceivedRequest {
  std::string text = {};  ///< all of it, verbatim
  std::string method = {};
  std::string target = {};
  std::string body = {};
  int connection = 0;  ///< 1 for requests on the first connection that was made, and so on

  /// The first value under this name.
  std::optional<std::string> header(std::string_view name) const;
};

/// An HTTP/1.1 server on the loopback interface that answers as scripted by a test and records its requests. Request
/// bodies must have a Content-Length.
class TestHttpServer {
 public:
  TestHttpServer();
  TestHttpServer(const TestHttpServer&) = delete;
  TestHttpServer& operator=(const TestHttpServer&) = delete;
  /// Opens all gates and closes all connections.
  ~TestHttpServer();

  int port() const { return port_; }
  /// "http://127.0.0.1:<port>" and the path.
  std::string url(std::string_view path = "/") const;

  /// Answers one more request; requests get these answers in the order of their arrival.
  void answer(Answer answer);
  /// Answers requests for which none of these is left. Called on a thread of the server. Without it they get 404.
  void answerOthers(std::function<Answer(const ReceivedRequest&)> responder);

  /// All requests so far, as soon as there are `count`; fewer after a long wait.
  std::vector<ReceivedRequest> waitForRequests(std::size_t count);
  /// Returns when `count` connections have been closed or reset by the peer; false after a long wait.
  [[nodiscard]] bool waitForHangUps(int count);

 private:
  void acceptAll();
  void serve(int socket, int connection);
  bool play(int socket, const Answer& answer);
  Answer nextAnswer(const ReceivedRequest& request);

  int listener_ = -1;
  int port_ = 0;

  std::mutex mutex_;  // guards the rest
  std::condition_variable changed_;
  bool stopping_ = false;
  std::vector<Answer> scripted_;
  std::size_t nextScripted_ = 0;
  std::function<Answer(const ReceivedRequest&)> responder_;
  std::vector<Gate> gates_;
  std::vector<ReceivedRequest> requests_;
  std::vector<int> sockets_;
  int hangUps_ = 0;
  std::vector<std::thread> connections_;
  std::thread acceptor_;
};

/// A loopback port on which nothing listens: it is privileged, and its service is long obsolete.
constexpr int refusedPort = 1;

}  // namespace quillmark
