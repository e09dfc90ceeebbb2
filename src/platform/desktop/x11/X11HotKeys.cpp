#include "platform/desktop/x11/X11HotKeys.h"

#include <algorithm>

#include <xcb/xinput.h>

#include "base/Log.h"
#include "platform/desktop/x11/KeyPositions.h"

namespace quillmark {
namespace {

constexpr std::uint16_t anyModifier = 0xff;  // the eight of the protocol, without buttons and groups

}  // namespace

X11HotKeys::X11HotKeys(X11Connection& connection, X11Keyboard& keyboard)
    : connection_(connection), keyboard_(keyboard), modifiers_(keyboard.modifiers()) {
  if (!connection_.alive()) {
    return;
  }
  press_ = connection_.onEvent(XCB_KEY_PRESS, [this](const xcb_generic_event_t& event) {
    pressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
  });
  release_ = connection_.onEvent(XCB_KEY_RELEASE, [this](const xcb_generic_event_t& event) {
    keyReleased(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
  });
  changed_ = keyboard_.changed.connect([this] { keyboardChanged(); });

  auto* const xcb = connection_.xcb();
  const auto* const input = xcb_get_extension_data(xcb, &xcb_input_id);
  if (input == nullptr || input->present == 0) {
    return;
  }
  const auto version = x11Owned(xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2), nullptr));
  const auto devices =
      x11Owned(xcb_input_xi_query_device_reply(xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL), nullptr));
  // Since version 2.1 raw events are sent even while a client has grabbed the keyboard.
  if (!version || !devices || version->major_version < 2 ||
      (version->major_version == 2 && version->minor_version < 1)) {
    return;
  }
  inputOpcode_ = input->major_opcode;
  for (auto it = xcb_input_xi_query_device_infos_iterator(devices.get()); it.rem != 0;
       xcb_input_xi_device_info_next(&it)) {
    const std::string_view name(xcb_input_xi_device_info_name(it.data), it.data->name_len);
    if (name.find("XTEST") != std::string_view::npos) {
      testDevices_.insert(it.data->deviceid);
    }
  }
  raw_ = connection_.onEvent(XCB_GE_GENERIC, [this](const xcb_generic_event_t& event) { rawKey(event); });
}

X11HotKeys::~X11HotKeys() {
  updateGuard(std::nullopt);
  for (auto& [name, hotKey] : hotKeys_) {
    drop(hotKey);
  }
  watchKeyboard(false);
  xcb_flush(connection_.xcb());
}

// --- registration

std::optional<X11HotKeys::Chord> X11HotKeys::chordOf(const KeyCombination& combination) const {
  const auto key = keys::xKeyCode(combination.carbonKeyCode);
  if (!key) {
    return std::nullopt;
  }
  Chord chord{*key, 0};
  const std::pair<int, std::uint16_t> table[] = {{KeyCombination::command, modifiers_.super},
                                                 {KeyCombination::shift, XCB_MOD_MASK_SHIFT},
                                                 {KeyCombination::option, modifiers_.alt},
                                                 {KeyCombination::control, XCB_MOD_MASK_CONTROL}};
  for (const auto& [flag, mask] : table) {
    if ((combination.carbonModifiers & flag) == 0) {
      continue;
    }
    if (mask == 0) {
      return std::nullopt;
    }
    chord.modifiers |= mask;
  }
  return chord;
}

bool X11HotKeys::isInUse(const Chord& chord) const {
  return std::ranges::any_of(hotKeys_, [&](const auto& entry) { return entry.second.chord == chord; });
}

void X11HotKeys::registerHotKey(const std::string& name, const KeyCombination& combination) {
  auto& hotKey = hotKeys_[name];
  if (hotKey.chord && hotKey.combination == combination) {
    return;
  }
  drop(hotKey);
  hotKey.combination = combination;
  take(name);
  xcb_flush(connection_.xcb());
}

void X11HotKeys::unregisterHotKey(const std::string& name) {
  if (const auto found = hotKeys_.find(name); found != hotKeys_.end()) {
    drop(found->second);
    hotKeys_.erase(found);
    xcb_flush(connection_.xcb());
  }
}

bool X11HotKeys::isAvailable(const KeyCombination& combination) {
  const auto chord = connection_.alive() ? chordOf(combination) : std::nullopt;
  if (!chord || isInUse(*chord)) {
    return chord.has_value();
  }
  const bool granted = grab(*chord);
  if (granted) {
    ungrab(*chord);
    xcb_flush(connection_.xcb());
  }
  return granted;
}

std::string X11HotKeys::keyLabel(int carbonKeyCode) const {
  const auto key = keys::xKeyCode(carbonKeyCode);
  return key ? keyboard_.label(*key) : std::to_string(carbonKeyCode);
}

std::optional<int> X11HotKeys::keyCodeOf(std::uint32_t nativeScanCode) const {
  return keys::virtualKeyCode(nativeScanCode);
}

void X11HotKeys::take(const std::string& name) {
  auto& hotKey = hotKeys_[name];
  const auto chord = connection_.alive() ? chordOf(hotKey.combination) : std::nullopt;
  if (!chord) {
    log("Hot key " + name + ": no key of this keyboard produces it");
  } else if (!isInUse(*chord) && !grab(*chord)) {
    log("Hot key " + name + ": the combination belongs to another program");
  } else {
    hotKey.chord = chord;
    return;
  }
  refused.emit(name);
}

void X11HotKeys::drop(HotKey& hotKey) {
  const auto chord = std::exchange(hotKey.chord, std::nullopt);
  if (chord && !isInUse(*chord)) {
    ungrab(*chord);
  }
}

std::vector<std::uint16_t> X11HotKeys::lockVariants() const {
  std::vector<std::uint16_t> variants{0, XCB_MOD_MASK_LOCK};
  if (modifiers_.numLock != 0) {
    variants.push_back(modifiers_.numLock);
    variants.push_back(static_cast<std::uint16_t>(modifiers_.numLock | XCB_MOD_MASK_LOCK));
  }
  return variants;
}

bool X11HotKeys::grab(const Chord& chord) {
  auto* const xcb = connection_.xcb();
  std::vector<xcb_void_cookie_t> cookies;
  for (const auto locks : lockVariants()) {
    cookies.push_back(xcb_grab_key_checked(xcb, 0, connection_.root(),
                                           static_cast<std::uint16_t>(chord.modifiers | locks), chord.key,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  bool granted = true;
  for (const auto cookie : cookies) {
    granted = x11Owned(xcb_request_check(xcb, cookie)) == nullptr && granted;
  }
  if (!granted) {
    ungrab(chord);
  }
  return granted;
}

void X11HotKeys::ungrab(const Chord& chord) {
  for (const auto locks : lockVariants()) {
    xcb_ungrab_key(connection_.xcb(), chord.key, connection_.root(),
                   static_cast<std::uint16_t>(chord.modifiers | locks));
  }
}

void X11HotKeys::keyboardChanged() {
  if (keyboard_.modifiers() == modifiers_) {
    return;  // key codes are positions: the grabs stay right for another layout
  }
  updateGuard(std::nullopt);
  for (auto& [name, hotKey] : hotKeys_) {
    drop(hotKey);
  }
  modifiers_ = keyboard_.modifiers();
  std::vector<std::string> names;
  for (const auto& [name, hotKey] : hotKeys_) {
    names.push_back(name);
  }
  for (const auto& name : names) {
    if (hotKeys_.contains(name)) {  // a handler of a refusal may unregister others
      take(name);
    }
  }
}

// --- presses and releases

void X11HotKeys::pressed(const xcb_key_press_event_t& event) {
  if (armed_.contains(event.detail)) {
    return;  // the key repeats
  }
  watchKeyboard(true);
  xcb_ungrab_keyboard(connection_.xcb(), XCB_CURRENT_TIME);  // only the hot key is ours
  heldKeys_ |= keyboard_.pressedKeys() & keyboard_.keys().modifiers;

  const auto locks = XCB_MOD_MASK_LOCK | modifiers_.numLock;
  const Chord seen{event.detail, static_cast<std::uint16_t>(event.state & anyModifier & ~locks)};
  const Chord felt{seen.key, static_cast<std::uint16_t>(seen.modifiers | heldModifiers())};
  if (isInUse(felt) || isInUse(seen)) {
    const auto chord = isInUse(felt) ? felt : seen;
    armed_[event.detail] = chord;
    updateGuard(chord);
  }
  stopIfNothingIsDown();
}

void X11HotKeys::keyReleased(std::uint8_t key) {
  const auto found = armed_.find(key);
  if (found == armed_.end()) {
    return;
  }
  const auto chord = found->second;
  armed_.erase(found);
  std::vector<std::string> names;
  for (const auto& [name, hotKey] : hotKeys_) {
    if (hotKey.chord == chord) {
      names.push_back(name);
    }
  }
  for (const auto& name : names) {
    released.emit(name);
  }
  stopIfNothingIsDown();
}

void X11HotKeys::rawKey(const xcb_generic_event_t& event) {
  const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
  const bool down = raw.event_type == XCB_INPUT_RAW_KEY_PRESS;
  if (!watching_ || raw.extension != inputOpcode_ || (!down && raw.event_type != XCB_INPUT_RAW_KEY_RELEASE)) {
    return;
  }
  if (testDevices_.contains(raw.sourceid) && connection_.isSimulated(event)) {
    return;
  }
  const auto key = static_cast<std::uint8_t>(raw.detail);
  if (keyboard_.maskOf(key) != 0) {
    heldKeys_[key] = down;
    updateGuard(guard_ ? std::optional(guard_->chord) : std::nullopt);
  }
  if (!down) {
    keyReleased(key);
  }
  stopIfNothingIsDown();
}

// --- the time between the press and the release of the last modifier

void X11HotKeys::watchKeyboard(bool watch) {
  if (inputOpcode_ == 0 || watch == watching_) {
    return;
  }
  watching_ = watch;
  struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } request{
      {XCB_INPUT_DEVICE_ALL_MASTER, 1},
      watch ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE} : 0u};
  xcb_input_xi_select_events(connection_.xcb(), connection_.root(), 1, &request.head);
}

std::uint16_t X11HotKeys::heldModifiers() const {
  std::uint16_t held = 0;
  for (unsigned key = 0; key < heldKeys_.size(); ++key) {
    if (heldKeys_[key]) {
      held |= keyboard_.maskOf(static_cast<std::uint8_t>(key));
    }
  }
  return held;
}

void X11HotKeys::updateGuard(const std::optional<Chord>& chord) {
  const auto held = heldModifiers();
  std::set<Chord> wanted;
  if (chord && chord->modifiers != 0 && (held & chord->modifiers) == chord->modifiers) {
    // Every proper subset of the modifiers: we can't know which of them the server still counts as held.
    for (unsigned part = (chord->modifiers - 1u) & chord->modifiers;; part = (part - 1u) & chord->modifiers) {
      const Chord partial{chord->key, static_cast<std::uint16_t>(part)};
      if (!isInUse(partial)) {
        wanted.insert(partial);
      }
      if (part == 0) {
        break;
      }
    }
  }
  const std::set<Chord> present = guard_ ? std::move(guard_->grabs) : std::set<Chord>{};
  for (const auto& partial : present) {
    if (!wanted.contains(partial) && !isInUse(partial)) {
      ungrab(partial);
    }
  }
  for (const auto& partial : wanted) {
    if (!present.contains(partial)) {
      for (const auto locks : lockVariants()) {
        xcb_grab_key(connection_.xcb(), 0, connection_.root(), static_cast<std::uint16_t>(partial.modifiers | locks),
                     partial.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
      }
    }
  }
  guard_.reset();
  if (chord) {
    guard_ = Guard{*chord, std::move(wanted)};
  }
}

void X11HotKeys::stopIfNothingIsDown() {
  if (armed_.empty() && heldKeys_.none()) {
    updateGuard(std::nullopt);
    watchKeyboard(false);
  }
  xcb_flush(connection_.xcb());
}

}  // namespace quillmark
