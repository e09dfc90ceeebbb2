#pragma once

#include <optional>
#include <string>

#include "base/Json.h"

/// The records of Anthropic's messages API. Reading throws DecodingError; only what the system uses is kept.
namespace quillmark {

/// The body of a request: one user message; the system prompt is a field of its own, even when empty.
Json messageParameter(const std::string& text, const std::string& systemPrompt, const std::string& model, bool stream);

/// The response of a single request.
struct MessageResponse {
  /// Of the first block of the content; absent without one, and in a block that is not text, such as tool use. Later
  /// blocks are ignored.
  std::optional<std::string> text;
};

MessageResponse messageResponseFromJson(const Json& json);

/// One event of a streamed answer, of whatever type.
struct MessageStreamResponse {
  std::optional<std::string> deltaText;
};

MessageStreamResponse messageStreamResponseFromJson(const Json& json);

/// The vendor's message in an error body; nothing for a body of another form.
std::optional<std::string> anthropicErrorMessage(const std::string& body);

}  // namespace quillmark
