// The shared line handling of chat completions streams, and the texts of plain streams.

#include "base/Text.h"
#include "fuzz/Fuzz.h"
#include "providers/SSEStreamParser.h"

using namespace quillmark;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Input input(data, size);
  const std::string chunk = text::decodeUtf8(input.text);
  std::vector<std::string> pieces;
  const bool ended =
      SSEStreamParser::handleChunk(chunk, [&](std::string piece) { pieces.push_back(std::move(piece)); });

  // Handled line by line, it comes to the same.
  std::vector<std::string> byLine;
  bool endedByLine = false;
  for (const auto line : text::splitAtNewlines(chunk)) {
    endedByLine = endedByLine ||
                  SSEStreamParser::handleChunk(line, [&](std::string piece) { byLine.push_back(std::move(piece)); });
    if (endedByLine) {
      break;
    }
  }
  fuzz::expect(pieces == byLine && ended == endedByLine, "lines are independent of each other");
  return 0;
}
