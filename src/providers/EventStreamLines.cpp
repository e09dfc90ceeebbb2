#include "providers/EventStreamLines.h"

#include <utility>

#include "base/Text.h"

namespace quillmark {

void EventStreamLines::feed(std::string_view block, const OnLine& onLine) {
  if (block.empty()) {
    return;
  }
  if (std::exchange(followsCarriageReturn_, false) && block.front() == '\n') {
    block.remove_prefix(1);
  }
  for (auto end = block.find_first_of("\r\n"); end != std::string_view::npos; end = block.find_first_of("\r\n")) {
    give(block.substr(0, end), onLine);
    const bool isCarriageReturn = block[end] == '\r';
    block.remove_prefix(end + 1);
    if (isCarriageReturn && block.empty()) {
      followsCarriageReturn_ = true;
    } else if (isCarriageReturn && block.front() == '\n') {
      block.remove_prefix(1);
    }
  }
  incompleteLine_ += block;
}

void EventStreamLines::finish(const OnLine& onLine) {
  if (!incompleteLine_.empty()) {
    give({}, onLine);
  }
}

void EventStreamLines::give(std::string_view rest, const OnLine& onLine) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  std::string bytes = std::exchange(incompleteLine_, {});
  bytes += rest;
  std::string_view line = bytes;
  if (std::exchange(isFirstLine_, false) && line.starts_with(byteOrderMark)) {
    line.remove_prefix(byteOrderMark.size());
  }
  onLine(text::decodeUtf8(line));
}

}  // namespace quillmark
