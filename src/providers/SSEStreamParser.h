#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// Extracts the text from the events of a chat completions stream.
class SSEStreamParser {
 public:
  /// The text in a payload such as `{"choices":[{"delta":{"content":"text"}}]}`: what follows "data: ". Nothing for any
  /// other payload; an empty text is a result.
  static std::optional<std::string> parseContent(std::string_view payload);

  /// Passes each piece of text in the data lines of one chunk to `onPiece`. True at the end mark "[DONE]", which ends
  /// the chunk. No state is kept between chunks: a line cut by a chunk boundary is lost.
  static bool handleChunk(std::string_view chunk, const std::function<void(std::string)>& onPiece);
};

}  // namespace quillmark
