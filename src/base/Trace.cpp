#include "base/Trace.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

namespace quillmark::trace {
namespace {

int descriptor = -1;

}  // namespace

void open() {
  if (const char* path = std::getenv("QUILLMARK_TRACE"); path != nullptr && *path != '\0') {
    descriptor = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  }
}

void mark(Stage stage) {
  if (descriptor < 0) {
    return;
  }
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  std::array<char, 160> line{};
  const int length = std::snprintf(line.data(), line.size(), "%lld%09ld %s\n", static_cast<long long>(now.tv_sec),
                                   now.tv_nsec, stage.name);
  // A lost trace line is not worth an error.
  [[maybe_unused]] const auto written = ::write(descriptor, line.data(), static_cast<std::size_t>(length));
}

}  // namespace quillmark::trace
