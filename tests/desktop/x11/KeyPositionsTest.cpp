#include <sstream>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon.h>

#include "platform/desktop/x11/KeyPositions.h"

namespace quillmark {
namespace {

// For each virtual key from 0 on: what is on its key of an American keyboard or, where that is nothing, what X calls
// its position. A dash for numbers that are no keys.
constexpr const char* positions =
    "a s d f h g z x c v LSGT b q w e r y t 1 2 3 4 6 5 equal 9 7 minus 8 0 bracketright o u bracketleft i p "
    "Return l j apostrophe k semicolon backslash comma slash n m period Tab space grave BackSpace - Escape "
    "Super_R Super_L Shift_L Caps_Lock Alt_L Control_L Shift_R Alt_R Control_R - FK17 KPDL - KP_Multiply - "
    "KP_Add - Num_Lock XF86AudioRaiseVolume XF86AudioLowerVolume XF86AudioMute KP_Divide KP_Enter - "
    "KP_Subtract FK18 FK19 KP_Equal KP0 KP1 KP2 KP3 KP4 KP5 KP6 KP7 FK20 KP8 KP9 AE13 AB11 I129 F5 F6 F7 F3 "
    "F8 F9 MUHE F11 HENK FK13 FK16 FK14 - F10 Menu F12 - FK15 Insert Home Page_Up Delete F4 End F2 Page_Down "
    "F1 Left Right Down Up";

TEST(KeyPositions, areThoseOfTheKeysOnXKeyboardsAndNoOthers) {
  const auto context =
      std::unique_ptr<xkb_context, void (*)(xkb_context*)>(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  const xkb_rule_names american{.rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
  const auto keymap = std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)>(
      xkb_keymap_new_from_names(context.get(), &american, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref);
  ASSERT_TRUE(keymap) << "this test needs the keyboard descriptions of X";
  const auto codeOf = [&](const char* name) {
    for (auto code = xkb_keymap_min_keycode(keymap.get()); code <= xkb_keymap_max_keycode(keymap.get()); ++code) {
      const xkb_keysym_t* symbols = nullptr;
      if (xkb_keymap_key_get_syms_by_level(keymap.get(), code, 0, 0, &symbols) == 1 &&
          symbols[0] == xkb_keysym_from_name(name, XKB_KEYSYM_NO_FLAGS)) {
        return code;
      }
    }
    return xkb_keymap_key_by_name(keymap.get(), name);
  };

  std::istringstream names(positions);
  std::string name;
  for (int virtualKey = 0; virtualKey <= 256; ++virtualKey) {
    if (names >> name && name != "-") {
      EXPECT_EQ(keys::xKeyCode(virtualKey), codeOf(name.c_str())) << name;
      EXPECT_EQ(keys::virtualKeyCode(codeOf(name.c_str())), virtualKey) << name;
    } else {
      EXPECT_EQ(keys::xKeyCode(virtualKey), std::nullopt) << virtualKey;
    }
  }
}

}  // namespace
}  // namespace quillmark
