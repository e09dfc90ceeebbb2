#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "commands/Variable.h"
#include "platform/LocaleInfo.h"
#include "platform/StoredList.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The user's prompt variables, and the five that the system computes. Main thread only.
class VariablesStore {
  StoredList<Variable> list_;

 public:
  using Edit = std::function<void(std::vector<Variable>&)>;

  static constexpr const char* userDefaultsKey = keys::variables.name;

  /// Loads the user's variables and computes the others.
  VariablesStore(UserDefaults& defaults, const LocaleInfo& locale);

  Setting<std::string> preferredLocale;  ///< identifier of the dialect the user writes in; "none": not set
  const Observable<std::vector<Variable>>& variables{list_.records()};  ///< the user's own, in list order
  Observable<std::vector<Variable>> staticVariables;  ///< computed; follow `preferredLocale`; never stored

  void load();
  /// False when the edit could not be stored; the list is then unchanged.
  [[nodiscard]] bool save(const Edit& edit);
  void updateStaticVariables();

  /// The computed variables, then the user's: the order in which they fill a template.
  std::vector<Variable> allVariables() const;
  std::optional<Variable> variable(const std::optional<Uuid>& id) const;
  /// Replaces the variable with the same key, id included, or appends; then saves.
  [[nodiscard]] bool upsert(Variable variable);

 private:
  const LocaleInfo& locale_;
  Connection localeChanges_;
};

}  // namespace quillmark
