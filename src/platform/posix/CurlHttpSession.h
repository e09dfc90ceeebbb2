#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <curl/curl.h>

#include "platform/HttpSession.h"

namespace quillmark {

struct CurlHttpOptions {
  using Clock = std::chrono::steady_clock;

  std::string caBundle;                                 ///< a PEM file; the system's authorities when empty
  std::function<Clock::time_point()> now = Clock::now;  ///< called on the session's thread
};

/// HTTP by libcurl on one thread, which starts with the first request and sleeps while there is nothing to do. Handlers
/// run and are destroyed on that thread; an exception from one is logged and goes no further.
class CurlHttpSession final : public HttpSession {
 public:
  CurlHttpSession();
  explicit CurlHttpSession(CurlHttpOptions options);
  ~CurlHttpSession() override;

  /// Ends the thread and drops every request, later ones included: once it returns, no handler runs any more. Call it
  /// before anything that handlers use is destroyed, and never from a handler.
  void stop();

  void start(HttpRequest request, HttpHandlers handlers) override;
  std::string userAgentToken() const override;

  /// Starts the thread before the first request, so that the library is initialised while the caller does other things.
  /// Any thread.
  void warmUp();

  /// Makes the thread check the patience of each request against its clock; needed after a test has moved that clock.
  /// Any thread.
  void lookAtClock();

 private:
  class Transfer;

  void ensureRunning();
  void wake();
  void run();
  void refuseAll();
  std::vector<std::unique_ptr<Transfer>> takeSubmitted();
  void begin(std::unique_ptr<Transfer> transfer);
  void finishDone();
  void failOverdue();
  int millisecondsToNextDeadline() const;
  std::unique_ptr<Transfer> take(const Transfer* transfer);
  /// The certificate authorities to trust: a bundle, or a directory in which each is found by its name.
  struct Authorities {
    std::string bundle;
    std::string directory;
  };
  const Authorities& authorities();

  const CurlHttpOptions options_;

  std::mutex mutex_;  // guards the next five; never held while a handler runs
  std::vector<std::unique_ptr<Transfer>> submitted_;
  CURLM* wakeable_ = nullptr;         // the thread's handle while it can be woken
  std::condition_variable refusing_;  // wakes the thread when there is no library to do it
  bool running_ = false;
  std::thread thread_;
  std::atomic<bool> stopping_ = false;

  // Used by the thread only.
  CURLM* multi_ = nullptr;
  std::vector<std::unique_ptr<Transfer>> active_;
  std::optional<Authorities> authorities_;
};

}  // namespace quillmark
