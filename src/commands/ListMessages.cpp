#include "commands/ListMessages.h"

#include "base/Localization.h"
#include "base/Text.h"
#include "commands/ToneStore.h"

namespace quillmark {

constinit const ListMessages ListMessages::languages({
    trLater("Delete Languages"),
    trLater("Are you sure you want to delete this language?"),
    trLater("Are you sure you want to delete {} languages?"),
    trLater("Unable to Delete Languages"),
    trLater("Unable to delete selected languages. This would leave no languages remaining."),
    trLater("Some languages could not be deleted. This would leave no languages remaining."),
});

constinit const ListMessages ListMessages::tones({
    trLater("Delete Tones"),
    trLater("Are you sure you want to delete this tone?"),
    trLater("Are you sure you want to delete {} tones?"),
    trLater("Unable to Delete Tones"),
    trLater("Unable to delete selected tones. This would leave no tones remaining."),
    trLater("Some tones could not be deleted. This would leave no tones remaining."),
});

ListMessages::Message ListMessages::deletionQuestion(std::size_t count) const {
  return {tr(texts_.deleteTitle), count == 1 ? tr(texts_.deleteOne) : tr(texts_.deleteSeveral, std::to_string(count))};
}

std::optional<ListMessages::Message> ListMessages::deletionFailure(std::size_t failures, std::size_t requested) const {
  if (failures == 0) {
    return std::nullopt;
  }
  return Message{tr(texts_.failureTitle), tr(failures == requested ? texts_.allFailed : texts_.someFailed)};
}

std::optional<ListMessages::Message> ListMessages::problemWithLanguage(const std::string& id) {
  if (id.empty()) {
    return Message{tr("Unable to Add Language"), tr("Please select a language to add.")};
  }
  return std::nullopt;
}

ListMessages::Message ListMessages::languageRefused() {
  return {tr("Unable to Add Language"), tr("This language already exists or could not be added.")};
}

std::optional<ListMessages::Message> ListMessages::problemWithTone(const std::string& name) {
  const auto trimmed = text::trimmed(name);
  if (trimmed.empty()) {
    return Message{tr("Unable to Add Tone"), tr("Tone name cannot be empty.")};
  }
  if (text::graphemeCount(trimmed) > ToneStore::longestName) {
    return Message{tr("Unable to Add Tone"), tr("Tone name must be 50 characters or less.")};
  }
  return std::nullopt;
}

ListMessages::Message ListMessages::toneRefused() {
  return {tr("Unable to Add Tone"), tr("A tone with this name already exists.")};
}

}  // namespace quillmark
