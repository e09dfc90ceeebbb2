#include "execution/KeyboardHelper.h"

#include <optional>
#include <vector>

namespace quillmark {

void KeyboardHelper::press(KeyCode key) {
  const auto modifierDown = injector_.createKeyboardEvent(KeyCode::commandModifier, true);
  const auto modifierUp = injector_.createKeyboardEvent(KeyCode::commandModifier, false);
  const auto keyDown = injector_.createKeyboardEvent(key, true);
  const auto keyUp = injector_.createKeyboardEvent(key, false);

  // The modifier is released before the key.
  std::vector<KeyboardEvent> events;
  for (const auto& created : {modifierDown, keyDown, modifierUp, keyUp}) {
    if (created) {
      events.push_back(*created);
      events.back().flags = commandFlag;
    }
  }
  injector_.post(events);
}

}  // namespace quillmark
