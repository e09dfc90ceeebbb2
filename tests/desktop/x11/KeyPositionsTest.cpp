#include <algorithm>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon.h>

#include "platform/desktop/x11/KeyPositions.h"

namespace quillmark {
namespace {

struct Key {
  int virtualKey;
  const char* name;              ///< what X keyboards call the position
  const char* symbol = nullptr;  ///< what is on it in the American layout
};

// clang-format off
constexpr Key standardKeys[] = {
    {0x00, "AC01", "a"}, {0x0B, "AB05", "b"}, {0x08, "AB03", "c"}, {0x02, "AC03", "d"}, {0x0E, "AD03", "e"},
    {0x03, "AC04", "f"}, {0x05, "AC05", "g"}, {0x04, "AC06", "h"}, {0x22, "AD08", "i"}, {0x26, "AC07", "j"},
    {0x28, "AC08", "k"}, {0x25, "AC09", "l"}, {0x2E, "AB07", "m"}, {0x2D, "AB06", "n"}, {0x1F, "AD09", "o"},
    {0x23, "AD10", "p"}, {0x0C, "AD01", "q"}, {0x0F, "AD04", "r"}, {0x01, "AC02", "s"}, {0x11, "AD05", "t"},
    {0x20, "AD07", "u"}, {0x09, "AB04", "v"}, {0x0D, "AD02", "w"}, {0x07, "AB02", "x"}, {0x10, "AD06", "y"},
    {0x06, "AB01", "z"},
    {0x12, "AE01", "1"}, {0x13, "AE02", "2"}, {0x14, "AE03", "3"}, {0x15, "AE04", "4"}, {0x17, "AE05", "5"},
    {0x16, "AE06", "6"}, {0x1A, "AE07", "7"}, {0x1C, "AE08", "8"}, {0x19, "AE09", "9"}, {0x1D, "AE10", "0"},
    {0x1B, "AE11", "minus"}, {0x18, "AE12", "equal"}, {0x21, "AD11", "bracketleft"}, {0x1E, "AD12", "bracketright"},
    {0x2A, "BKSL", "backslash"}, {0x29, "AC10", "semicolon"}, {0x27, "AC11", "apostrophe"}, {0x32, "TLDE", "grave"},
    {0x2B, "AB08", "comma"}, {0x2F, "AB09", "period"}, {0x2C, "AB10", "slash"},
    {0x24, "RTRN", "Return"}, {0x30, "TAB", "Tab"}, {0x31, "SPCE", "space"}, {0x33, "BKSP", "BackSpace"},
    {0x35, "ESC", "Escape"},
    {0x37, "LWIN", "Super_L"}, {0x36, "RWIN", "Super_R"}, {0x38, "LFSH", "Shift_L"}, {0x3C, "RTSH", "Shift_R"},
    {0x3A, "LALT", "Alt_L"}, {0x3D, "RALT", "Alt_R"}, {0x3B, "LCTL", "Control_L"}, {0x3E, "RCTL", "Control_R"},
    {0x39, "CAPS", "Caps_Lock"},
    {0x7A, "FK01", "F1"}, {0x78, "FK02", "F2"}, {0x63, "FK03", "F3"}, {0x76, "FK04", "F4"}, {0x60, "FK05", "F5"},
    {0x61, "FK06", "F6"}, {0x62, "FK07", "F7"}, {0x64, "FK08", "F8"}, {0x65, "FK09", "F9"}, {0x6D, "FK10", "F10"},
    {0x67, "FK11", "F11"}, {0x6F, "FK12", "F12"}, {0x69, "FK13"}, {0x6B, "FK14"}, {0x71, "FK15"}, {0x6A, "FK16"},
    {0x40, "FK17"}, {0x4F, "FK18"}, {0x50, "FK19"}, {0x5A, "FK20"},
    {0x52, "KP0"}, {0x53, "KP1"}, {0x54, "KP2"}, {0x55, "KP3"}, {0x56, "KP4"}, {0x57, "KP5"}, {0x58, "KP6"},
    {0x59, "KP7"}, {0x5B, "KP8"}, {0x5C, "KP9"}, {0x41, "KPDL"}, {0x43, "KPMU", "KP_Multiply"},
    {0x45, "KPAD", "KP_Add"}, {0x4B, "KPDV", "KP_Divide"}, {0x4C, "KPEN", "KP_Enter"}, {0x4E, "KPSU", "KP_Subtract"},
    {0x51, "KPEQ", "KP_Equal"}, {0x47, "NMLK", "Num_Lock"},
    {0x72, "INS", "Insert"}, {0x73, "HOME", "Home"}, {0x74, "PGUP", "Page_Up"}, {0x75, "DELE", "Delete"},
    {0x77, "END", "End"}, {0x79, "PGDN", "Page_Down"}, {0x7B, "LEFT", "Left"}, {0x7C, "RGHT", "Right"},
    {0x7D, "DOWN", "Down"}, {0x7E, "UP", "Up"}, {0x6E, "COMP", "Menu"},
    {0x48, "VOL+", "XF86AudioRaiseVolume"}, {0x49, "VOL-", "XF86AudioLowerVolume"}, {0x4A, "MUTE", "XF86AudioMute"},
    {0x0A, "LSGT"}, {0x5D, "AE13"}, {0x5E, "AB11"}, {0x5F, "I129"}, {0x66, "MUHE"}, {0x68, "HENK"},
};
// clang-format on

TEST(KeyPositions, standForTheKeysThatXKeyboardsHaveThere) {
  const auto context =
      std::unique_ptr<xkb_context, void (*)(xkb_context*)>(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
  const xkb_rule_names american{.rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
  const auto keymap = std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)>(
      xkb_keymap_new_from_names(context.get(), &american, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref);
  ASSERT_TRUE(keymap) << "this test needs the keyboard descriptions of X";

  for (const Key& key : standardKeys) {
    const auto code = xkb_keymap_key_by_name(keymap.get(), key.name);
    ASSERT_NE(code, XKB_KEYCODE_INVALID) << key.name;
    EXPECT_EQ(keys::xKeyCode(key.virtualKey), code) << key.name;
    EXPECT_EQ(keys::virtualKeyCode(code), key.virtualKey) << key.name;
    if (key.symbol != nullptr) {
      const xkb_keysym_t* symbols = nullptr;
      ASSERT_EQ(xkb_keymap_key_get_syms_by_level(keymap.get(), code, 0, 0, &symbols), 1) << key.name;
      EXPECT_EQ(symbols[0], xkb_keysym_from_name(key.symbol, XKB_KEYSYM_NO_FLAGS)) << key.symbol;
    }
  }
}

TEST(KeyPositions, areOfTheseKeysAndNoOthers) {
  std::set<int> standard;
  for (const Key& key : standardKeys) {
    EXPECT_TRUE(standard.insert(key.virtualKey).second) << key.name;
  }
  std::set<int> known;
  for (int virtualKey = -1; virtualKey <= 256; ++virtualKey) {
    if (keys::xKeyCode(virtualKey)) {
      known.insert(virtualKey);
    }
  }
  EXPECT_EQ(known, standard);
}

}  // namespace
}  // namespace quillmark
