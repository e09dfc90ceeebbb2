#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Json.h"
#include "providers/ProviderModel.h"

/// The records of the chat completions dialect. Reading throws DecodingError; keys that are not named are ignored.
namespace quillmark {

/// The body of a chat request: the system message only when there is a prompt, then the user message.
Json chatQuery(const std::string& text, const std::string& systemPrompt, const std::string& model, bool stream);

/// Removes the double braces of the prompt, in which models sometimes wrap an answer.
std::string withoutBraces(std::string answer);

/// The response of a chat request.
struct GenericChatResult {
  struct Message {
    std::string role;
    std::optional<std::string> content;
    std::optional<std::string> refusal;
    std::optional<std::string> reasoning;
  };
  struct Choice {
    std::int64_t index = 0;
    Message message;
    std::optional<std::string> finishReason;
  };
  struct Usage {
    std::optional<std::int64_t> promptTokens;
    std::optional<std::int64_t> completionTokens;
    std::optional<std::int64_t> totalTokens;
    std::optional<std::int64_t> cachedTokens;
    std::optional<std::int64_t> reasoningTokens;
  };

  std::optional<std::string> id;
  std::optional<std::string> provider;
  std::string model;
  std::string object;
  double created = 0;  ///< seconds since 1970
  std::vector<Choice> choices;
  std::optional<Usage> usage;
  std::optional<std::string> systemFingerprint;
  std::optional<std::string> nativeFinishReason;
};

GenericChatResult genericChatResultFromJson(const Json& json);
/// The same from Google, whose record has fewer keys; the others are ignored there, whatever they hold.
GenericChatResult googleChatResultFromJson(const Json& json);
/// One line for the log.
std::string describe(const GenericChatResult& result);

/// One entry of a model listing.
struct GenericModelData {
  std::string id;
  std::optional<std::string> name;
  std::optional<std::string> displayName;
  std::optional<std::int64_t> contextLength;
  std::optional<std::string> type;
  std::optional<bool> enabled;

  /// A new record whose label is the name, else the display name, else the id.
  ProviderModel toModel(ProviderType providerType) const;
};

/// A bare array of entries.
std::vector<GenericModelData> modelDataFromJson(const Json& json);
/// The usual listing: an object with the array under `data`.
std::vector<GenericModelData> genericModelResponseFromJson(const Json& json);

}  // namespace quillmark
