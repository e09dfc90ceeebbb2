#pragma once

#include <string>

namespace quillmark {

/// Counts how the program is used, by the names of commands and providers.
class UsageRecorder {
 public:
  UsageRecorder() = default;
  UsageRecorder(const UsageRecorder&) = delete;
  UsageRecorder& operator=(const UsageRecorder&) = delete;
  virtual ~UsageRecorder() = default;

  virtual void recordCommand(const std::string& name) = 0;
  virtual void recordProvider(const std::string& name) = 0;
};

}  // namespace quillmark
