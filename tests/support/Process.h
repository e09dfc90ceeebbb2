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

/// Looks again every few milliseconds until the condition holds; false after the deadline.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline = std::chrono::seconds(20));

/// A program that was started and is ended with its object.
class Process {
 public:
  /// The files behind its standard streams; without one for errors they go where the output goes.
  struct Streams {
    std::filesystem::path input = "/dev/null";
    std::filesystem::path output = "/dev/null";
    std::filesystem::path errors = {};
  };

  /// Gives it this environment and nothing of one's own. Throws std::runtime_error when it can't be started.
  Process(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment,
          const Streams& streams, int inheritedDescriptor = -1);
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process();

  pid_t pid() const { return pid_; }
  bool running();
  void signal(int number) const;
  /// Asks it to end, insists after two seconds, and waits for the end.
  void end();
  /// Waits for the program to end by itself; nothing when it does not, or was killed.
  std::optional<int> exitStatus(std::chrono::milliseconds deadline = std::chrono::seconds(20));

 private:
  pid_t pid_ = -1;
  std::optional<int> status_;
};

std::string readFile(const std::filesystem::path& file);
/// Makes the directories that are missing, too.
void writeFile(const std::filesystem::path& file, std::string_view contents);

/// What follows a label in a line of a program's output, as soon as that line is whole; nothing when it does not come.
std::optional<std::string> waitForOutput(const std::filesystem::path& output, std::string_view label);

}  // namespace quillmark
