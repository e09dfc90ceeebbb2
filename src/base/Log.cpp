#include "base/Log.h"

#include <cstdio>
#include <string>
#include <utility>

namespace quillmark {
namespace {

std::function<void(std::string_view)>& sink() {
  static std::function<void(std::string_view)> value;
  return value;
}

}  // namespace

void log(std::string_view line) {
  if (sink()) {
    sink()(line);
    return;
  }
  // One write per line, so that lines of different threads never mix.
  std::string whole(line);
  whole += '\n';
  std::fwrite(whole.data(), 1, whole.size(), stdout);
  std::fflush(stdout);
}

void setLogSink(std::function<void(std::string_view)> newSink) { sink() = std::move(newSink); }

}  // namespace quillmark
