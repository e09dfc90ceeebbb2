#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quillmark {

/// Polls every few milliseconds until the condition holds; false after the deadline.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline = std::chrono::seconds(20));

/// A started program; the destructor ends it.
class Process {
 public:
  /// The files for its standard streams; without one for errors they go to the output's.
  struct Streams {
    std::filesystem::path input = "/dev/null";
    std::filesystem::path output = "/dev/null";
    std::filesystem::path errors = {};
  };

  /// Starts it with this environment only. Throws std::runtime_error when it can't be started.
  Process(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment,
          const Streams& streams, int inheritedDescriptor = -1);
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process();

  pid_t pid() const { return pid_; }
  bool running();
  void signal(int number) const;
  /// Asks it to end, kills it after two seconds, and waits for its end.
  void end();
  /// Waits for the program to end on its own; nothing when it does not, or was killed.
  std::optional<int> exitStatus(std::chrono::milliseconds deadline = std::chrono::seconds(20));

 private:
  pid_t pid_ = -1;
  std::optional<int> status_;
};

std::string readFile(const std::filesystem::path& file);
/// Also creates missing directories.
void writeFile(const std::filesystem::path& file, std::string_view contents);

/// What follows a label in a line of a program's output, as soon as that line is complete; nothing when it does not
/// appear.
std::optional<std::string> waitForOutput(const std::filesystem::path& output, std::string_view label);

}  // namespace quillmark
