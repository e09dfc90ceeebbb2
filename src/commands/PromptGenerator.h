#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "commands/Command.h"
#include "commands/UserAction.h"
#include "commands/Variable.h"

namespace quillmark {

/// Fills one template. The variables "tone" and "language" are only listed: the action's parameter fills their
/// placeholders.
class PromptGenerator {
 public:
  PromptGenerator(const UserAction& type, const std::vector<Variable>& variables);

  /// Replaces the placeholders of the variables one after another, then that of the action's parameter, each in the
  /// result of the previous step. An unknown placeholder stays. An absent template gives an empty prompt.
  std::string generate(const std::optional<std::string>& promptTemplate, const UserAction& type) const;

 private:
  std::set<std::string> exludedVariables_{"tone", "language"};
  std::vector<Variable> variables_;
};

/// The filled template of a command: its own, or else the built-in one of its type.
std::string promptFor(const Command& command, const std::vector<Variable>& variables);

}  // namespace quillmark
