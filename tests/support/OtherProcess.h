#pragma once

#include <functional>
#include <vector>

#include <sys/types.h>

namespace quillmark {

/// A second process that runs its steps on demand. It is forked in the constructor, so create it before anything that
/// must not be copied is open: threads, databases.
class OtherProcess {
 public:
  /// A step returns whether it succeeded.
  explicit OtherProcess(std::vector<std::function<bool()>> steps);
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  /// Kills it if it is still running.
  ~OtherProcess();

  /// Starts the next step.
  void begin();
  /// Waits for the end of the started step.
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
