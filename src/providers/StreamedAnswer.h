#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/MainQueue.h"
#include "providers/AIProvider.h"

namespace quillmark {

/// An answer that arrives in pieces, and its callbacks on the main thread. Belongs to the thread that handles the
/// stream.
class StreamedAnswer {
 public:
  StreamedAnswer(MainQueue& queue, std::function<void(const std::string&)> onChunk,
                 AIProvider::ChatCompletion onComplete)
      : queue_(queue),
        onChunk_(std::make_shared<const std::function<void(const std::string&)>>(std::move(onChunk))),
        onComplete_(std::move(onComplete)) {}

  bool isFinished() const { return finished_; }

  void append(std::string piece) {
    fullText_ += piece;
    queue_.async([onChunk = onChunk_, piece = std::move(piece)] { (*onChunk)(piece); });
  }

  /// What has arrived is the answer. Only the first end counts: an end mark and the end of the connection both call
  /// this.
  void finish() { end(fullText_.empty() ? std::nullopt : std::optional(fullText_)); }
  /// What has arrived is dropped.
  void fail() { end(std::nullopt); }

 private:
  void end(std::optional<std::string> answer) {
    if (!std::exchange(finished_, true)) {
      queue_.async([onComplete = std::move(onComplete_), answer = std::move(answer)] { onComplete(answer); });
    }
  }

  MainQueue& queue_;
  std::shared_ptr<const std::function<void(const std::string&)>> onChunk_;
  AIProvider::ChatCompletion onComplete_;
  std::string fullText_;
  bool finished_ = false;
};

}  // namespace quillmark
