#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "providers/EventStreamLines.h"

namespace quillmark {

/// An event stream as the HTML standard defines it (section "Server-sent events", interpretation of an event stream),
/// with state across the blocks in which its bytes arrive. An event that is unfinished at the end of the stream is
/// discarded.
class ServerSentEventsStreamParser {
 public:
  struct Event {
    std::string type = "message";
    std::string data;
    std::string lastEventId;
  };
  using OnEvent = std::function<void(const Event&)>;

  void feed(std::string_view block, const OnEvent& onEvent);

  /// The stream's last `retry` value in milliseconds; -1 before the first.
  int retry() const { return retry_; }

 private:
  void handleLine(const std::string& line, const OnEvent& onEvent);
  void handleField(std::string_view name, std::string_view value);
  void dispatch(const OnEvent& onEvent);

  EventStreamLines lines_;
  std::string type_;
  std::string data_;
  std::string lastEventId_;
  int retry_ = -1;
};

}  // namespace quillmark
