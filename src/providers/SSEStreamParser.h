#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// Takes the text out of the events of a chat completions stream.
class SSEStreamParser {
 public:
  /// The text in a payload such as `{"choices":[{"delta":{"content":"text"}}]}`: what stands behind "data: ". Nothing
  /// for any other payload; an empty text is a result.
  static std::optional<std::string> parseContent(std::string_view payload);

  /// Gives each text piece of the data lines of one chunk to `onPiece`. True at the end mark "[DONE]", which ends the
  /// chunk. No state passes to the next chunk: a line that a chunk boundary cuts is lost.
  static bool handleChunk(std::string_view chunk, const std::function<void(std::string)>& onPiece);
};

}  // namespace quillmark
