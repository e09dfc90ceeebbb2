#pragma once

#include <optional>
#include <string>

#include "commands/Command.h"

namespace quillmark {

/// Shows a result beside the selected text before anything reaches the other application. From execute() on the session
/// owns the run: prompt, provider, counters and write-back.
class ReviewSession {
 public:
  ReviewSession() = default;
  ReviewSession(const ReviewSession&) = delete;
  ReviewSession& operator=(const ReviewSession&) = delete;
  virtual ~ReviewSession() = default;

  virtual void setCommand(const std::optional<Command>& command) = 0;
  virtual void open(const std::string& text, const std::string& initialText) = 0;
  virtual void execute(const Command& command, const std::string& text) = 0;
};

}  // namespace quillmark
