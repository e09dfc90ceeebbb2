#include "commands/VariablesStore.h"

#include <algorithm>

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {

namespace {

std::vector<Variable> examples() {
  return {{Uuid::random(), "name", "Jane Sample", tr("Your name"), false},
          {Uuid::random(), "role", "Managing Director of Sample Corp", tr("Your role"), false}};
}

}  // namespace

VariablesStore::VariablesStore(UserDefaults& defaults, const LocaleInfo& locale)
    : list_(defaults, keys::variables, variableFromJson, {.initial = examples}),
      preferredLocale(defaults, keys::preferredLocale),
      locale_(locale) {
  load();
  updateStaticVariables();
  localeChanges_ = preferredLocale.observe([this](const std::string&) { updateStaticVariables(); });
}

void VariablesStore::load() {
  if (list_.load().found == LoadedList::Found::list) {
    log("Load variables " + std::to_string(variables->size()));
  }
}

bool VariablesStore::save(const Edit& edit) {
  if (!list_.edit(edit)) {
    return false;
  }
  log("saved " + std::to_string(variables->size()));
  return true;
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

bool VariablesStore::upsert(Variable variable) {
  return save([&variable](auto& list) {
    const auto found = std::ranges::find(list, variable.key, &Variable::key);
    if (found == list.end()) {
      list.push_back(std::move(variable));
    } else {
      *found = std::move(variable);
    }
  });
}

}  // namespace quillmark
