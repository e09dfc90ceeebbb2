#pragma once

#include <functional>
#include <vector>

#include <sys/types.h>

namespace quillmark {

/// A second process that takes its steps when it is told to. It is a copy of this one from the moment of construction,
/// so make it before anything that must not be copied is open: threads, databases.
class OtherProcess {
 public:
  /// A step returns whether it succeeded.
  explicit OtherProcess(std::vector<std::function<bool()>> steps);
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  /// Kills it if it is still there.
  ~OtherProcess();

  /// Starts the next step.
  void begin();
  /// Waits for the end of the step that was begun.
  [[nodiscard]] bool finish();
  [[nodiscard]] bool step() {
    begin();
    return finish();
  }
  /// SIGKILL, and waits until it is gone.
  void kill();

 private:
  pid_t process_ = -1;
  int channel_ = -1;
};

}  // namespace quillmark
