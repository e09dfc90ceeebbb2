#include "commands/PromptGenerator.h"

#include <algorithm>
#include <iterator>

#include "base/Text.h"
#include "commands/PromptFactory.h"

namespace quillmark {

PromptGenerator::PromptGenerator(const UserAction& /*type*/, const std::vector<Variable>& variables) {
  std::copy_if(variables.begin(), variables.end(), std::back_inserter(variables_),
               [this](const Variable& variable) { return !exludedVariables_.contains(variable.key); });
}

std::string PromptGenerator::generate(const std::optional<std::string>& promptTemplate, const UserAction& type) const {
  std::string result = promptTemplate.value_or("");
  for (const auto& variable : variables_) {
    result = text::replacingAll(std::move(result), "{{" + variable.key + "}}", variable.value);
  }
  if (const ActionParameter* parameter = info(type.kind).parameter) {
    result = text::replacingAll(std::move(result), parameter->placeholder, type.parameter.value_or(""));
  }
  return result;
}

std::string promptFor(const Command& command, const std::vector<Variable>& variables) {
  const std::string promptTemplate = command.content ? *command.content : PromptFactory::promptText(command.type);
  return PromptGenerator(command.type, variables).generate(promptTemplate, command.type);
}

}  // namespace quillmark
