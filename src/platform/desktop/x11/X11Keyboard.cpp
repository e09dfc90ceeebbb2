#include "platform/desktop/x11/X11Keyboard.h"

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include "base/Log.h"

namespace quillmark {
namespace {

constexpr std::uint16_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

bool locks(xkb_keysym_t symbol) {
  switch (symbol) {
    case XKB_KEY_Caps_Lock:
    case XKB_KEY_Num_Lock:
    case XKB_KEY_Scroll_Lock:
    case XKB_KEY_Shift_Lock:
    case XKB_KEY_ISO_Lock:
    case XKB_KEY_ISO_Level2_Latch:
    case XKB_KEY_ISO_Level3_Latch:
    case XKB_KEY_ISO_Level3_Lock:
    case XKB_KEY_ISO_Level5_Latch:
    case XKB_KEY_ISO_Level5_Lock:
      return true;
    default:
      return false;
  }
}

/// Symbols whose X name is not what people call the key.
constexpr std::pair<xkb_keysym_t, const char*> spokenNames[] = {
    {XKB_KEY_space, "Space"},          {XKB_KEY_Prior, "Page Up"},
    {XKB_KEY_Next, "Page Down"},       {XKB_KEY_Escape, "Esc"},
    {XKB_KEY_BackSpace, "Backspace"},  {XKB_KEY_Print, "Print Screen"},
    {XKB_KEY_KP_Home, "Keypad 7"},     {XKB_KEY_KP_Up, "Keypad 8"},
    {XKB_KEY_KP_Prior, "Keypad 9"},    {XKB_KEY_KP_Left, "Keypad 4"},
    {XKB_KEY_KP_Begin, "Keypad 5"},    {XKB_KEY_KP_Right, "Keypad 6"},
    {XKB_KEY_KP_End, "Keypad 1"},      {XKB_KEY_KP_Down, "Keypad 2"},
    {XKB_KEY_KP_Next, "Keypad 3"},     {XKB_KEY_KP_Insert, "Keypad 0"},
    {XKB_KEY_KP_Delete, "Keypad ."},   {XKB_KEY_KP_Add, "Keypad +"},
    {XKB_KEY_KP_Subtract, "Keypad -"}, {XKB_KEY_KP_Multiply, "Keypad *"},
    {XKB_KEY_KP_Divide, "Keypad /"},   {XKB_KEY_KP_Enter, "Keypad Enter"},
    {XKB_KEY_KP_Equal, "Keypad ="},
};

std::string keyName(xkb_keysym_t symbol) {
  for (const auto& [candidate, name] : spokenNames) {
    if (candidate == symbol) {
      return name;
    }
  }
  if (const auto character = xkb_keysym_to_utf32(xkb_keysym_to_upper(symbol)); character > 0x20 && character != 0x7F) {
    std::array<char, 8> text{};
    xkb_keysym_to_utf8(xkb_keysym_to_upper(symbol), text.data(), text.size());
    return text.data();
  }
  std::array<char, 64> name{};
  xkb_keysym_get_name(symbol, name.data(), name.size());
  return name.data();
}

chord::XKeys keySet(const std::uint8_t (&bytes)[32]) {
  chord::XKeys result;
  for (unsigned key = 0; key < result.size(); ++key) {
    result[key] = (bytes[key / 8] >> (key % 8) & 1) != 0;
  }
  return result;
}

}  // namespace

X11Keyboard::X11Keyboard(X11Connection& connection, MainQueue& queue) : connection_(connection), queue_(queue) {
  auto* const xcb = connection_.xcb();
  const auto* const xtest = connection_.alive() ? xcb_get_extension_data(xcb, &xcb_test_id) : nullptr;
  canSimulate_ = xtest != nullptr && xtest->present != 0;

  std::uint8_t firstEvent = 0;
  if (!connection_.alive() ||
      xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                  XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr) == 0) {
    log("X11: the server has no keyboard extension");
    stale_ = false;
    return;
  }
  context_ = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr std::uint16_t mapParts =
      XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
  xcb_xkb_select_events(xcb, coreKeyboard, events, 0, events, mapParts, mapParts, nullptr);
  // A held key then gives presses without a release between them.
  x11Owned(xcb_xkb_per_client_flags_reply(
      xcb,
      xcb_xkb_per_client_flags(xcb, coreKeyboard, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0),
      nullptr));

  // The server reports a new map whenever another device of the same kind is used, and often several times per change:
  // read it once, after the pending events have been handled.
  mapEvents_ = connection_.onEvent(firstEvent, [this](const xcb_generic_event_t& event) {
    const auto kind = event.pad0;  // of an XKB event
    if (stale_ || (kind != XCB_XKB_NEW_KEYBOARD_NOTIFY && kind != XCB_XKB_MAP_NOTIFY)) {
      return;
    }
    stale_ = true;
    queue_.async(lifetime_.guard([this] { readIfStale(); }));
  });
  read();
}

X11Keyboard::~X11Keyboard() { xkb_context_unref(context_); }

void X11Keyboard::readIfStale() {
  if (stale_) {
    read();
    changed.emit();
  }
}

void X11Keyboard::read() {
  stale_ = false;
  auto* const xcb = connection_.xcb();
  const auto modifierCookie = xcb_get_modifier_mapping(xcb);
  const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
      xkb_x11_keymap_new_from_device(context_, xcb, xkb_x11_get_core_keyboard_device_id(xcb),
                                     XKB_KEYMAP_COMPILE_NO_FLAGS),
      xkb_keymap_unref);
  const auto mapping = x11Owned(xcb_get_modifier_mapping_reply(xcb, modifierCookie, nullptr));
  if (!keymap || !mapping) {
    log("X11: the keyboard map can't be read");
    return;
  }

  const auto symbolOf = [&](xkb_keycode_t key, xkb_layout_index_t group) -> xkb_keysym_t {
    const xkb_keysym_t* symbols = nullptr;
    return xkb_keymap_key_get_syms_by_level(keymap.get(), key, group, 0, &symbols) == 1 ? symbols[0] : XKB_KEY_NoSymbol;
  };
  const auto firstKey = xkb_keymap_min_keycode(keymap.get());
  const auto lastKey = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap.get()), 255);

  symbols_.assign(xkb_keymap_num_layouts(keymap.get()), {});
  keys_ = {};
  keys_.groups.resize(xkb_keymap_num_layouts(keymap.get()));
  const auto keep = [](chord::XKey& place, xkb_keycode_t key) {
    if (place == 0) {
      place = static_cast<chord::XKey>(key);
    }
  };
  for (auto key = firstKey; key <= lastKey; ++key) {
    for (xkb_layout_index_t group = 0; group < keys_.groups.size(); ++group) {
      const auto symbol = symbolOf(key, group);
      symbols_[group][key] = symbol;
      switch (symbol) {
        case XKB_KEY_c:
          keep(keys_.groups[group].c, key);
          break;
        case XKB_KEY_v:
          keep(keys_.groups[group].v, key);
          break;
        case XKB_KEY_Insert:
          keep(keys_.insert, key);
          break;
        case XKB_KEY_Control_L:
          keep(keys_.control, key);
          break;
        case XKB_KEY_Shift_L:
          keep(keys_.shift, key);
          break;
        default:
          break;
      }
    }
  }

  modifiers_ = {};
  masks_.fill(0);
  const auto* const codes = xcb_get_modifier_mapping_keycodes(mapping.get());
  for (int modifier = 0; modifier < 8; ++modifier) {
    const auto mask = static_cast<std::uint8_t>(1 << modifier);
    for (int i = 0; i < mapping->keycodes_per_modifier; ++i) {
      const auto key = codes[modifier * mapping->keycodes_per_modifier + i];
      if (key == 0) {
        continue;
      }
      bool lockKey = mask == XCB_MOD_MASK_LOCK;
      for (xkb_layout_index_t group = 0; group < keys_.groups.size(); ++group) {
        const auto symbol = symbolOf(key, group);
        lockKey = lockKey || locks(symbol);
        if (symbol == XKB_KEY_Num_Lock) {
          modifiers_.numLock = mask;
        } else if (symbol == XKB_KEY_Alt_L) {
          modifiers_.alt = mask;
        } else if (symbol == XKB_KEY_Super_L) {
          modifiers_.super = mask;
        }
      }
      if (!lockKey) {
        masks_[key] |= mask;
        keys_.modifiers.set(key);
      }
    }
  }
}

const chord::Keyboard& X11Keyboard::keys() {
  readIfStale();
  return keys_;
}

X11Keyboard::Modifiers X11Keyboard::modifiers() {
  readIfStale();
  return modifiers_;
}

std::uint16_t X11Keyboard::maskOf(std::uint8_t key) {
  readIfStale();
  return masks_[key];
}

std::string X11Keyboard::label(std::uint8_t key) {
  readIfStale();
  if (symbols_.empty()) {
    return {};
  }
  const auto group = std::min<std::size_t>(moment().group, symbols_.size() - 1);
  xkb_keysym_t symbol = symbols_[group][key];
  if (symbol == XKB_KEY_NoSymbol) {
    symbol = symbols_.front()[key];  // a key that this group does not define
  }
  return keyName(symbol);
}

chord::Moment X11Keyboard::moment() {
  auto* const xcb = connection_.xcb();
  const auto stateCookie = xcb_xkb_get_state(xcb, coreKeyboard);
  const auto keysCookie = xcb_query_keymap(xcb);
  const auto state = x11Owned(xcb_xkb_get_state_reply(xcb, stateCookie, nullptr));
  const auto pressed = x11Owned(xcb_query_keymap_reply(xcb, keysCookie, nullptr));
  chord::Moment moment;
  if (state) {
    moment.group = state->group;
    moment.lockedGroup = state->lockedGroup;
  }
  if (pressed) {
    moment.pressed = keySet(pressed->keys);
  }
  return moment;
}

chord::XKeys X11Keyboard::pressedKeys() {
  const auto reply = x11Owned(xcb_query_keymap_reply(connection_.xcb(), xcb_query_keymap(connection_.xcb()), nullptr));
  return reply ? keySet(reply->keys) : chord::XKeys{};
}

}  // namespace quillmark
