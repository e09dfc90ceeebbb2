#include <set>
#include <string>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon.h>

#include "platform/desktop/x11/KeyPositions.h"

namespace quillmark {
namespace {

// Virtual keys, and what is on the key of an American keyboard or, where that is nothing, what X calls its position.
// clang-format off
constexpr std::pair<int, const char*> standardKeys[] = {
    {0x00, "a"}, {0x0B, "b"}, {0x08, "c"}, {0x02, "d"}, {0x0E, "e"}, {0x03, "f"}, {0x05, "g"}, {0x04, "h"},
    {0x22, "i"}, {0x26, "j"}, {0x28, "k"}, {0x25, "l"}, {0x2E, "m"}, {0x2D, "n"}, {0x1F, "o"}, {0x23, "p"},
    {0x0C, "q"}, {0x0F, "r"}, {0x01, "s"}, {0x11, "t"}, {0x20, "u"}, {0x09, "v"}, {0x0D, "w"}, {0x07, "x"},
    {0x10, "y"}, {0x06, "z"}, {0x12, "1"}, {0x13, "2"}, {0x14, "3"}, {0x15, "4"}, {0x17, "5"}, {0x16, "6"},
    {0x1A, "7"}, {0x1C, "8"}, {0x19, "9"}, {0x1D, "0"}, {0x1B, "minus"}, {0x18, "equal"}, {0x21, "bracketleft"},
    {0x1E, "bracketright"}, {0x2A, "backslash"}, {0x29, "semicolon"}, {0x27, "apostrophe"}, {0x32, "grave"},
    {0x2B, "comma"}, {0x2F, "period"}, {0x2C, "slash"}, {0x24, "Return"}, {0x30, "Tab"}, {0x31, "space"},
    {0x33, "BackSpace"}, {0x35, "Escape"}, {0x37, "Super_L"}, {0x36, "Super_R"}, {0x38, "Shift_L"}, {0x3C, "Shift_R"},
    {0x3A, "Alt_L"}, {0x3D, "Alt_R"}, {0x3B, "Control_L"}, {0x3E, "Control_R"}, {0x39, "Caps_Lock"}, {0x7A, "F1"},
    {0x78, "F2"}, {0x63, "F3"}, {0x76, "F4"}, {0x60, "F5"}, {0x61, "F6"}, {0x62, "F7"}, {0x64, "F8"}, {0x65, "F9"},
    {0x6D, "F10"}, {0x67, "F11"}, {0x6F, "F12"}, {0x69, "FK13"}, {0x6B, "FK14"}, {0x71, "FK15"}, {0x6A, "FK16"},
    {0x40, "FK17"}, {0x4F, "FK18"}, {0x50, "FK19"}, {0x5A, "FK20"}, {0x52, "KP0"}, {0x53, "KP1"}, {0x54, "KP2"},
    {0x55, "KP3"}, {0x56, "KP4"}, {0x57, "KP5"}, {0x58, "KP6"}, {0x59, "KP7"}, {0x5B, "KP8"}, {0x5C, "KP9"},
    {0x41, "KPDL"}, {0x43, "KP_Multiply"}, {0x45, "KP_Add"}, {0x4B, "KP_Divide"}, {0x4C, "KP_Enter"},
    {0x4E, "KP_Subtract"}, {0x51, "KP_Equal"}, {0x47, "Num_Lock"}, {0x72, "Insert"}, {0x73, "Home"}, {0x74, "Page_Up"},
    {0x75, "Delete"}, {0x77, "End"}, {0x79, "Page_Down"}, {0x7B, "Left"}, {0x7C, "Right"}, {0x7D, "Down"},
    {0x7E, "Up"}, {0x6E, "Menu"}, {0x48, "XF86AudioRaiseVolume"}, {0x49, "XF86AudioLowerVolume"},
    {0x4A, "XF86AudioMute"}, {0x0A, "LSGT"}, {0x5D, "AE13"}, {0x5E, "AB11"}, {0x5F, "I129"}, {0x66, "MUHE"},
    {0x68, "HENK"},
};
// clang-format on

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

  std::set<int> standard, known;
  for (const auto& [virtualKey, name] : standardKeys) {
    standard.insert(virtualKey);
    EXPECT_EQ(keys::xKeyCode(virtualKey), codeOf(name)) << name;
    EXPECT_EQ(keys::virtualKeyCode(codeOf(name)), virtualKey) << name;
  }
  for (int virtualKey = -1; virtualKey <= 256; ++virtualKey) {
    if (keys::xKeyCode(virtualKey)) {
      known.insert(virtualKey);
    }
  }
  EXPECT_EQ(known, standard);
}

}  // namespace
}  // namespace quillmark
