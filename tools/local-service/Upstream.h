#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include "base/Json.h"

namespace httplib {
class Client;
}

namespace quillmark::service {

/// Reads the lines of a chat completions event stream (the "data:" lines of server-sent events, each a JSON chunk, the
/// last one "[DONE]") and extracts their text.
class EventStreamReader {
 public:
  /// The text that the bytes so far complete; bytes may be cut anywhere. Lines that are not chunks are skipped.
  std::string take(std::string_view bytes);

 private:
  std::string rest_;
};

/// A server that speaks the chat completions dialect.
class Upstream {
 public:
  struct Settings {
    std::string baseUrl;  ///< such as http://127.0.0.1:11434/v1, without or with a slash at the end
    std::string key;      ///< sent as a bearer token unless empty
    std::string model;    ///< asked for instead of the request's own unless empty
  };

  struct Answer {
    int status = 502;
    std::string body;
  };

  class Stream;

  /// Throws std::invalid_argument for anything but an http or https URL.
  explicit Upstream(Settings settings);
  ~Upstream();

  Answer complete(const Json& request);
  Answer models();
  std::shared_ptr<Stream> stream(const Json& request);

  /// Aborts every request in progress.
  void stop();

 private:
  class Call;
  Answer exchange(const std::string& method, const std::string& path, const std::string& body);

  Settings settings_;
  std::string host_;  ///< scheme, host and port
  std::string path_;  ///< the base path without a slash at the end
  std::mutex mutex_;
  std::set<httplib::Client*> calls_;
  bool stopping_ = false;
};

/// One streamed answer in progress. The request runs on a thread of its own, so that the status is known before the
/// first text.
class Upstream::Stream {
 public:
  Stream(Upstream& upstream, const Json& request);
  ~Stream();

  /// Waits for the head of the answer. A failure's body is in error().
  int status();
  std::string error();
  /// Waits for the next text; nothing at the end.
  std::optional<std::string> next();

 private:
  void run(Upstream& upstream, const std::string& body);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<int> status_;
  std::string error_;
  std::deque<std::string> texts_;
  bool ended_ = false;
  httplib::Client* client_ = nullptr;
  bool cancelled_ = false;
  std::thread thread_;
};

/// An error in the service's format.
std::string errorBody(const std::string& message);

}  // namespace quillmark::service
