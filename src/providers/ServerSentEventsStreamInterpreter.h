#pragma once

#include <optional>
#include <string>

#include "base/Expected.h"
#include "providers/OpenAIRecords.h"
#include "providers/ServerSentEventsStreamParser.h"

namespace quillmark {

/// What the events of OpenAI's chat stream mean.
class ServerSentEventsStreamInterpreter {
 public:
  static constexpr const char* streamingCompletionMarker = "[DONE]";

  /// The record in an event; nothing at the end mark of the stream. The error describes what is wrong with any other
  /// event.
  static Expected<std::optional<ChatStreamResult>, std::string> interpret(
      const ServerSentEventsStreamParser::Event& event);
};

}  // namespace quillmark
