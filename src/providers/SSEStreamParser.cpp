#include "providers/SSEStreamParser.h"

#include "base/Json.h"
#include "base/Text.h"

namespace quillmark {

std::optional<std::string> SSEStreamParser::parseContent(std::string_view payload) {
  const Json event = Json::parse(payload, nullptr, /*allow_exceptions=*/false);
  if (!event.is_object()) {
    return std::nullopt;
  }
  const auto choices = event.find("choices");
  if (choices == event.end() || !choices->is_array() || choices->empty()) {
    return std::nullopt;
  }
  for (const auto& choice : *choices) {
    if (!choice.is_object()) {
      return std::nullopt;
    }
  }
  const auto delta = choices->front().find("delta");
  if (delta == choices->front().end() || !delta->is_object()) {
    return std::nullopt;
  }
  const auto content = delta->find("content");
  return content != delta->end() && content->is_string() ? std::optional(content->get<std::string>()) : std::nullopt;
}

bool SSEStreamParser::handleChunk(std::string_view chunk, const std::function<void(std::string)>& onPiece) {
  constexpr std::string_view prefix = "data: ";
  for (const auto untrimmed : text::splitAtNewlines(chunk)) {
    const auto line = text::trimmed(untrimmed);
    if (line.substr(0, prefix.size()) != prefix) {
      continue;
    }
    const auto payload = line.substr(prefix.size());
    if (payload == "[DONE]") {
      return true;
    }
    if (auto piece = parseContent(payload)) {
      onPiece(std::move(*piece));
    }
  }
  return false;
}

}  // namespace quillmark
