#include "support/OtherProcess.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark {

OtherProcess::OtherProcess(std::vector<std::function<bool()>> steps) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0 || (process_ = fork()) < 0) {
    throw std::runtime_error("no second process");
  }
  if (process_ != 0) {
    close(ends[1]);
    channel_ = ends[0];
    return;
  }
  close(ends[0]);
  for (const auto& step : steps) {
    char go = 0;
    if (read(ends[1], &go, 1) != 1) {
      _exit(0);
    }
    const char succeeded = step() ? 1 : 0;
    if (send(ends[1], &succeeded, 1, MSG_NOSIGNAL) != 1) {
      _exit(0);
    }
  }
  _exit(0);
}

OtherProcess::~OtherProcess() {
  kill();
  close(channel_);
}

void OtherProcess::begin() {
  const char go = 1;
  send(channel_, &go, 1, MSG_NOSIGNAL);
}

bool OtherProcess::finish() {
  char succeeded = 0;
  return read(channel_, &succeeded, 1) == 1 && succeeded == 1;
}

void OtherProcess::kill() {
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
  }
}

}  // namespace quillmark
