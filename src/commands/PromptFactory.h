#pragma once

#include <string>

#include "commands/UserAction.h"

namespace quillmark {

/// The built-in prompt templates.
class PromptFactory {
 public:
  /// The template of an action, whatever its parameter. `executePrompt` and `customPrompt` have an empty one.
  static std::string promptText(const UserAction& action);
};

}  // namespace quillmark
