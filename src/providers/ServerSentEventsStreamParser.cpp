#include "providers/ServerSentEventsStreamParser.h"

#include <charconv>
#include <utility>

namespace quillmark {

void ServerSentEventsStreamParser::feed(std::string_view block, const OnEvent& onEvent) {
  lines_.feed(block, [&](const std::string& line) { handleLine(line, onEvent); });
}

void ServerSentEventsStreamParser::handleLine(const std::string& line, const OnEvent& onEvent) {
  if (line.empty()) {
    dispatch(onEvent);
    return;
  }
  const std::string_view whole = line;
  const auto colon = whole.find(':');
  if (colon == 0) {
    return;  // a comment
  }
  auto value = colon == std::string_view::npos ? std::string_view() : whole.substr(colon + 1);
  if (value.starts_with(' ')) {
    value.remove_prefix(1);
  }
  handleField(whole.substr(0, colon), value);
}

void ServerSentEventsStreamParser::handleField(std::string_view name, std::string_view value) {
  if (name == "data") {
    data_ += value;
    data_ += '\n';
  } else if (name == "event") {
    type_ = value;
  } else if (name == "id") {
    if (value.find('\0') == std::string_view::npos) {
      lastEventId_ = value;
    }
  } else if (name == "retry" && value.find_first_not_of("0123456789") == std::string_view::npos) {
    std::from_chars(value.data(), value.data() + value.size(), retry_);
  }
}

void ServerSentEventsStreamParser::dispatch(const OnEvent& onEvent) {
  const std::string type = std::exchange(type_, {});
  if (data_.empty()) {
    return;
  }
  Event event;
  event.data = std::exchange(data_, {});
  event.data.pop_back();  // the line feed after the last line
  if (!type.empty()) {
    event.type = type;
  }
  event.lastEventId = lastEventId_;
  onEvent(event);
}

}  // namespace quillmark
