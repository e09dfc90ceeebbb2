#include "providers/ServerSentEventsStreamInterpreter.h"

namespace quillmark {

Expected<std::optional<ChatStreamResult>, std::string> ServerSentEventsStreamInterpreter::interpret(
    const ServerSentEventsStreamParser::Event& event) {
  if (event.type != "message") {
    return unexpected("The stream has an event of an unknown type: " + event.type);
  }
  if (event.data == streamingCompletionMarker) {
    return std::optional<ChatStreamResult>();
  }
  try {
    return std::optional(chatStreamResultFromJson(parseJson(event.data)));
  } catch (const DecodingError& error) {
    return unexpected(std::string(error.what()));
  }
}

}  // namespace quillmark
