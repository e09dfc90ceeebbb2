#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Signal.h"
#include "commands/CustomPromptStore.h"
#include "commands/LanguageStore.h"
#include "commands/ToneStore.h"
#include "execution/ActionService.h"
#include "execution/ActiveApplicationTracker.h"
#include "execution/CommandPanel.h"
#include "execution/GlobalShortcuts.h"

namespace quillmark {

/// Keeps a global shortcut handler for each name that has a meaning: the three fixed ones and one for each command.
/// The handlers are renewed when the number of commands changes. Works by itself once made.
class KeyboardSubscriptions {
 public:
  // The names that no command has.
  static constexpr const char* commandMenu = "commandMenu";
  static constexpr const char* translate = "translate";
  static constexpr const char* changeTone = "changeTone";

  KeyboardSubscriptions(GlobalShortcuts& shortcuts, CustomPromptStore& promptStore, LanguageStore& languageStore,
                        ToneStore& toneStore, ActionService& actionService, CommandPanel& commandPanel,
                        ActiveApplicationTracker& tracker);

 private:
  void subscribe(const std::vector<Command>& commands);
  void onKeyUp(const std::string& name, std::function<void()> action);

  GlobalShortcuts& shortcuts_;
  LanguageStore& languageStore_;
  ToneStore& toneStore_;
  ActionService& actionService_;
  CommandPanel& commandPanel_;
  ActiveApplicationTracker& tracker_;
  std::ptrdiff_t promptCount_ = -1;  // no list has this length, so the first one always registers
  Connection commandChanges_;
};

}  // namespace quillmark
