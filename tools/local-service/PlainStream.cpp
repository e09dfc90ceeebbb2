#include "local-service/PlainStream.h"

namespace quillmark::service {
namespace {

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

std::string escapedForStream(std::string_view text) {
  std::string result;
  result.reserve(text.size() + text.size() / 16);
  for (const char c : text) {
    switch (c) {
      case '\n':
        result += "\\n";
        break;
      case '\t':
        result += "\\t";
        break;
      case '\r':
        result += "\\r";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::vector<std::string_view> streamChunks(std::string_view escaped, std::size_t size) {
  std::vector<std::string_view> chunks;
  while (!escaped.empty()) {
    std::size_t end = std::min(std::max<std::size_t>(size, 1), escaped.size());
    while (end < escaped.size() && (continuesCharacter(escaped[end]) || escaped[end - 1] == '\\')) {
      ++end;
    }
    chunks.push_back(escaped.substr(0, end));
    escaped.remove_prefix(end);
  }
  return chunks;
}

}  // namespace quillmark::service
