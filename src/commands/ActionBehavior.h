#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "base/RawValue.h"

namespace quillmark {

/// The ways of applying an answer.
enum class ActionBehavior {
  replaceSelection,
  showReview,
  copyToClipboard,
  insertAfterSelection,
  insertBeforeSelection
};

template <>
struct RawValues<ActionBehavior> {
  static constexpr std::array<std::pair<ActionBehavior, std::string_view>, 5> table{{
      {ActionBehavior::replaceSelection, "replaceSelection"},
      {ActionBehavior::showReview, "showReview"},
      {ActionBehavior::copyToClipboard, "copyToClipboard"},
      {ActionBehavior::insertAfterSelection, "insertAfterSelection"},
      {ActionBehavior::insertBeforeSelection, "insertBeforeSelection"},
  }};
};

/// Whether the answer goes into the other application's text.
constexpr bool pastes(ActionBehavior behavior) {
  return behavior != ActionBehavior::showReview && behavior != ActionBehavior::copyToClipboard;
}

/// In the interface language.
std::string title(ActionBehavior behavior);

}  // namespace quillmark
