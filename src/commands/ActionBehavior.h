#pragma once

#include <string>
#include <string_view>

#include "base/Localization.h"
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

struct ActionBehaviorInfo {
  ActionBehavior key;
  std::string_view raw;
  const char* title;  ///< English
};

template <>
struct RawValues<ActionBehavior> {
  static constexpr EnumTable<ActionBehaviorInfo> table{{
      {ActionBehavior::replaceSelection, "replaceSelection", trLater("Replace Selection")},
      {ActionBehavior::showReview, "showReview", trLater("Show Review")},
      {ActionBehavior::copyToClipboard, "copyToClipboard", trLater("Copy to Clipboard")},
      {ActionBehavior::insertAfterSelection, "insertAfterSelection", trLater("Insert After Selection")},
      {ActionBehavior::insertBeforeSelection, "insertBeforeSelection", trLater("Insert Before Selection")},
  }};
};

/// Whether the answer is pasted into the other application.
constexpr bool pastes(ActionBehavior behavior) {
  return behavior != ActionBehavior::showReview && behavior != ActionBehavior::copyToClipboard;
}

/// In the interface language.
inline std::string title(ActionBehavior behavior) { return tr(RawValues<ActionBehavior>::table[behavior].title); }

}  // namespace quillmark
