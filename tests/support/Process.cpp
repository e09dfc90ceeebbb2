#include "support/Process.h"

#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark {

using namespace std::chrono_literals;

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(3ms);
  }
  return true;
}

Process::Process(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment,
                 const Streams& streams, int inheritedDescriptor) {
  std::vector<std::string> settings;
  for (const auto& [name, value] : environment) {
    settings.push_back(name + "=" + value);
  }
  std::vector<char*> argv;
  for (const auto& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  std::vector<char*> envp;
  for (auto& setting : settings) {
    envp.push_back(setting.data());
  }
  envp.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr int writing = O_WRONLY | O_CREAT | O_APPEND;
  posix_spawn_file_actions_addopen(&actions, 0, streams.input.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, streams.output.c_str(), writing, 0600);
  if (streams.errors.empty()) {
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
  } else {
    posix_spawn_file_actions_addopen(&actions, 2, streams.errors.c_str(), writing, 0600);
  }
  if (inheritedDescriptor >= 0) {
    posix_spawn_file_actions_adddup2(&actions, inheritedDescriptor, inheritedDescriptor);  // clears close-on-exec
  }
  const int error = posix_spawnp(&pid_, argv[0], &actions, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("can't start " + arguments.front() + ": " + std::strerror(error));
  }
}

Process::~Process() { end(); }

bool Process::running() {
  if (pid_ <= 0 || status_) {
    return false;
  }
  int status = 0;
  if (waitpid(pid_, &status, WNOHANG) == pid_) {
    status_ = status;
  }
  return !status_;
}

void Process::signal(int number) const {
  if (pid_ > 0 && !status_) {
    kill(pid_, number);
  }
}

void Process::end() {
  if (!running()) {
    return;
  }
  kill(pid_, SIGTERM);
  kill(pid_, SIGCONT);
  if (!waitUntil([this] { return !running(); }, 2s)) {
    kill(pid_, SIGKILL);
    waitUntil([this] { return !running(); }, 10s);
  }
}

std::optional<int> Process::exitStatus(std::chrono::milliseconds deadline) {
  if (!waitUntil([this] { return !running(); }, deadline) || !WIFEXITED(*status_)) {
    return std::nullopt;
  }
  return WEXITSTATUS(*status_);
}

std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream contents;
  contents << stream.rdbuf();
  return contents.str();
}

void writeFile(const std::filesystem::path& file, std::string_view contents) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << contents;
}

std::optional<std::string> waitForOutput(const std::filesystem::path& output, std::string_view label) {
  std::string value;
  const bool there = waitUntil([&] {
    const auto text = readFile(output);
    const auto at = text.find(label);
    const auto end = text.find('\n', at);
    if (at == std::string::npos || end == std::string::npos) {
      return false;
    }
    value = text.substr(at + label.size(), end - at - label.size());
    return true;
  });
  return there ? std::optional(value) : std::nullopt;
}

}  // namespace quillmark
