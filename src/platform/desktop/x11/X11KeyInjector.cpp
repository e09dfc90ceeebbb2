#include "platform/desktop/x11/X11KeyInjector.h"

#include <xcb/xtest.h>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include "base/Log.h"
#include "platform/desktop/x11/X11WindowClass.h"

namespace quillmark {

std::optional<KeyboardEvent> X11KeyInjector::createKeyboardEvent(KeyCode keyCode, bool keyDown) {
  if (!connection_.alive() || !keyboard_.canSimulate()) {
    return std::nullopt;
  }
  return KeyboardEvent{keyCode, keyDown, 0};
}

chord::Dialect X11KeyInjector::dialectOfWindowInFront() const {
  const auto active = connection_.property(connection_.root(), connection_.atoms().netActiveWindow);
  const auto windows = active ? active->numbers() : std::vector<std::uint32_t>{};
  if (windows.empty()) {
    return chord::Dialect::control;
  }
  if (connection_.property(windows.front(), connection_.atoms().quillmarkPanel)) {
    return chord::Dialect::none;  // a panel of ours never contains the user's selection
  }
  const auto names = x11WindowClass(connection_, windows.front());
  return chord::dialectOf(names.instanceName, names.className);
}

void X11KeyInjector::post(std::span<const KeyboardEvent> events) {
  workspace_.whenActivated(lifetime_.guard([this, kept = std::vector(events.begin(), events.end())] { send(kept); }));
}

void X11KeyInjector::send(std::span<const KeyboardEvent> events) {
  if (!connection_.alive() || !keyboard_.canSimulate()) {
    return;
  }
  auto* const xcb = connection_.xcb();
  const auto dialect = dialectOfWindowInFront();
  if (dialect == chord::Dialect::none) {
    log("Keys: the window in front has none for copy and paste");
    return;
  }
  const auto& keys = keyboard_.keys();

  // No input of the user comes between reading the keyboard's state and our keys.
  const auto first = xcb_grab_server(xcb).sequence;
  const auto steps = chord::steps(events, keys, keyboard_.moment(), dialect);
  xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);  // a hot key that is still down would swallow our keys
  for (const auto& [kind, value] : steps) {
    switch (kind) {
      case chord::Step::Kind::press:
        xcb_test_fake_input(xcb, XCB_KEY_PRESS, value, 0, XCB_NONE, 0, 0, 0);
        break;
      case chord::Step::Kind::release:
        xcb_test_fake_input(xcb, XCB_KEY_RELEASE, value, 0, XCB_NONE, 0, 0, 0);
        break;
      case chord::Step::Kind::lockGroup:
        xcb_xkb_latch_lock_state(xcb, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, value, 0, 0, 0);
        break;
    }
  }
  const auto behind = xcb_ungrab_server(xcb).sequence;
  xcb_flush(xcb);
  connection_.markSimulation(first, behind);
  if (steps.empty()) {
    log("Keys: this keyboard can't produce the combination");
  }
}

}  // namespace quillmark
