#include "commands/VariablesStore.h"

#include <algorithm>

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {

VariablesStore::VariablesStore(UserDefaults& defaults, const LocaleInfo& locale)
    : preferredLocale(defaults, keys::preferredLocale),
      stored_(defaults, userDefaultsKey, variableFromJson),
      locale_(locale) {
  load();
  updateStaticVariables();
}

void VariablesStore::load() {
  if (auto stored = stored_.load(); stored.records) {
    log("Load variables " + std::to_string(stored.records->size()));
    variables.set(std::move(*stored.records));
    return;
  }
  variables.mutate([](auto& list) {
    list.push_back({Uuid::random(), "name", "Jane Sample", tr("Your name"), false});
    list.push_back({Uuid::random(), "role", "Managing Director of Sample Corp", tr("Your role"), false});
  });
}

void VariablesStore::save() {
  log("saved " + std::to_string(variables.get().size()));
  stored_.store(variables.get());
}

void VariablesStore::updateStaticVariables() {
  const std::string identifier = preferredLocale.get();
  std::string name;
  std::string sentence;
  if (identifier != "none") {
    const auto displayName = locale_.displayName(identifier, identifier);
    name = displayName.value_or("");
    sentence = "- I write in " + displayName.value_or(identifier) + ".";
  }
  const auto computed = [](const char* key, std::string value, std::string comment) {
    return Variable{Uuid::random(), key, std::move(value), std::move(comment), true};
  };
  staticVariables.set({
      computed("locale", identifier, tr("Locale as iso code")),
      computed("localeString", name, tr("Your preferred language")),
      computed("localeSentence", sentence, tr("Your preferred language as sentence")),
      computed("language", "<selected language>", tr("Used for translation command, based on the selected language")),
      computed("tone", "<selected tone>", tr("Used for change tone command, based on the selected tone")),
  });
}

std::vector<Variable> VariablesStore::allVariables() const {
  std::vector<Variable> all = staticVariables.get();
  all.insert(all.end(), variables.get().begin(), variables.get().end());
  return all;
}

std::optional<Variable> VariablesStore::variable(const std::optional<Uuid>& id) const {
  const auto& list = variables.get();
  const auto found = std::find_if(list.begin(), list.end(), [&](const auto& candidate) { return candidate.id == id; });
  return found == list.end() ? std::nullopt : std::optional(*found);
}

void VariablesStore::upsert(Variable variable) {
  variables.mutate([&](auto& list) {
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const auto& candidate) { return candidate.key == variable.key; });
    if (found == list.end()) {
      list.push_back(std::move(variable));
    } else {
      *found = std::move(variable);
    }
  });
  save();
}

}  // namespace quillmark
