#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "commands/Variable.h"
#include "platform/LocaleInfo.h"
#include "platform/StoredRecords.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The user's prompt variables, and the five that the system computes. Main thread only.
class VariablesStore {
 public:
  static constexpr const char* userDefaultsKey = keys::variables.name;

  /// Loads the user's variables and computes the others.
  VariablesStore(UserDefaults& defaults, const LocaleInfo& locale);

  Setting<std::string> preferredLocale;               ///< identifier of what the user writes in; "none": not set
  Observable<std::vector<Variable>> variables;        ///< the user's own, in list order; stored by save()
  Observable<std::vector<Variable>> staticVariables;  ///< computed; never stored

  void load();
  void save();
  /// To be called after each change of `preferredLocale`.
  void updateStaticVariables();

  /// The computed variables, then the user's: the order in which they fill a template.
  std::vector<Variable> allVariables() const;
  std::optional<Variable> variable(const std::optional<Uuid>& id) const;
  /// Replaces the variable with the same key, id included, or appends; then saves.
  void upsert(Variable variable);

 private:
  StoredRecords<Variable> stored_;
  const LocaleInfo& locale_;
};

}  // namespace quillmark
