// Every record that is read from the network or from the stored settings.

#include <functional>

#include "base/Json.h"
#include "commands/Command.h"
#include "commands/CommandTemplate.h"
#include "commands/ConfigurableItem.h"
#include "commands/Variable.h"
#include "fuzz/Fuzz.h"
#include "providers/AnthropicRecords.h"
#include "providers/ChatCompletions.h"
#include "providers/OpenAIRecords.h"
#include "providers/ProviderConfig.h"
#include "providers/ProviderModel.h"
#include "shell/AppStatistics.h"
#include "shell/VersionInquiry.h"

using namespace quillmark;

namespace {

/// Reads a record that is stored: what was understood must survive writing and reading again.
template <class T>
void stored(const Json& json, T (*read)(const Json&, const std::string&)) {
  const T record = read(json, {});
  fuzz::expect(read(parseJson(toText(toJson(record))), {}) == record, "a stored record comes back as it was");
}

const std::function<void(const Json&)> readers[] = {
    [](const Json& json) { describe(genericChatResultFromJson(json)); },
    [](const Json& json) { describe(googleChatResultFromJson(json)); },
    [](const Json& json) { genericModelResponseFromJson(json); },
    [](const Json& json) { modelDataFromJson(json); },
    [](const Json& json) { describe(chatResultFromJson(json)); },
    [](const Json& json) { chatStreamResultFromJson(json); },
    [](const Json& json) { modelsResultFromJson(json); },
    [](const Json& json) { apiErrorMessage(json); },
    [](const Json& json) { messageResponseFromJson(json); },
    [](const Json& json) { messageStreamResponseFromJson(json); },
    [](const Json& json) { stored<Command>(json, commandFromJson); },
    [](const Json& json) { stored<ConfigurableItem>(json, configurableItemFromJson); },
    [](const Json& json) { stored<Variable>(json, variableFromJson); },
    [](const Json& json) { stored<ProviderConfig>(json, providerConfigFromJson); },
    [](const Json& json) { stored<ProviderModel>(json, providerModelFromJson); },
    [](const Json& json) { commandTemplateFromJson(json, {}).toCommand(); },
    [](const Json& json) { statisticsResponseFromJson(json); },
    [](const Json& json) { appVersionFromJson(json); },
    [](const Json& json) { toText(toJson(appStatisticsFromJson(json))); },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Input input(data, size);
  anthropicErrorMessage(std::string(input.text));
  try {
    readers[input.choice % std::size(readers)](parseJson(input.text));
  } catch (const DecodingError&) {
    // Invalid input gives an error and nothing else.
  }
  return 0;
}
