#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "local-service/TextWork.h"
#include "local-service/Upstream.h"

namespace httplib {
class Server;
struct Request;
struct Response;
}  // namespace httplib

namespace quillmark::service {

/// The hosted service's paths, served on the loopback address.
class Service {
 public:
  struct Settings {
    int port = 0;                     ///< 0: any free one
    std::chrono::milliseconds delay;  ///< before each completion
    std::string version;              ///< offered as the newest one
    std::optional<Upstream::Settings> upstream;
  };

  /// Already listens when it returns; requests wait until run(). Throws std::runtime_error when the port is taken or
  /// the dictionary is missing.
  explicit Service(Settings settings);
  ~Service();

  int port() const { return port_; }

  /// Serves until stop().
  void run();
  /// Any thread, any time after the constructor. Requests in progress are aborted.
  void stop();

 private:
  void addRoutes();
  void complete(const httplib::Request& request, httplib::Response& response);
  void completeUpstream(const Json& body, bool streamed, httplib::Response& response);
  /// Waits for the delay; false when the service stops meanwhile.
  bool waitDelay();

  Settings settings_;
  Spelling spelling_;
  TextWork work_{spelling_};
  std::unique_ptr<Upstream> upstream_;
  std::unique_ptr<httplib::Server> server_;
  int port_ = 0;
  std::mutex mutex_;
  std::condition_variable stopped_;
  bool stopping_ = false;
};

}  // namespace quillmark::service
