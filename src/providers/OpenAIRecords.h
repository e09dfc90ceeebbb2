#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Json.h"

/// The records of OpenAI's API, read strictly: a required key that is missing or null is a DecodingError. Only what the
/// system uses is kept.
namespace quillmark {

/// The response of a chat request.
struct ChatResult {
  struct Choice {
    std::optional<std::string> content;
    std::string finishReason;
  };
  std::string id;
  std::string model;
  std::vector<Choice> choices;
};

ChatResult chatResultFromJson(const Json& json);
/// One line for the log.
std::string describe(const ChatResult& result);

/// One event of a streamed answer.
struct ChatStreamResult {
  struct Choice {
    std::optional<std::string> content;
  };
  std::vector<Choice> choices;
};

ChatStreamResult chatStreamResultFromJson(const Json& json);

/// The identifiers of a model listing.
std::vector<std::string> modelsResultFromJson(const Json& json);

/// The message of an error body, in either form: an object with an `error` of OpenAI's form, or an array whose first
/// element holds one of Gemini's. Nothing for a body of another form.
std::optional<std::string> apiErrorMessage(const Json& json);

}  // namespace quillmark
