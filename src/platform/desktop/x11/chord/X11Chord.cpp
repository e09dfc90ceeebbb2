#include "platform/desktop/x11/chord/X11Chord.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "base/Text.h"

namespace quillmark::chord {
namespace {

struct Terminal {
  std::string_view name;  // lower case
  Dialect dialect;
};

// In xterm and its relatives Control+Shift+C is the same interrupt as Control+C, Control+Insert types a piece of an
// escape sequence at the prompt of a shell, and Shift+Insert pastes the primary selection, not the clipboard.
constexpr Terminal terminals[] = {
    {"alacritty", Dialect::controlShift},
    {"com.mitchellh.ghostty", Dialect::controlShift},
    {"cool-retro-term", Dialect::controlShift},
    {"deepin-terminal", Dialect::controlShift},
    {"foot", Dialect::controlShift},
    {"footclient", Dialect::controlShift},
    {"gnome-terminal", Dialect::controlShift},
    {"gnome-terminal-server", Dialect::controlShift},
    {"guake", Dialect::controlShift},
    {"hyper", Dialect::controlShift},
    {"io.elementary.terminal", Dialect::controlShift},
    {"kgx", Dialect::controlShift},
    {"kitty", Dialect::controlShift},
    {"koi8rxterm", Dialect::none},
    {"konsole", Dialect::controlShift},
    {"lxterm", Dialect::none},
    {"lxterminal", Dialect::controlShift},
    {"mate-terminal", Dialect::controlShift},
    {"org.gnome.console", Dialect::controlShift},
    {"org.gnome.ptyxis", Dialect::controlShift},
    {"org.kde.konsole", Dialect::controlShift},
    {"org.wezfurlong.wezterm", Dialect::controlShift},
    {"ptyxis", Dialect::controlShift},
    {"qterminal", Dialect::controlShift},
    {"rxvt", Dialect::none},
    {"sakura", Dialect::controlShift},
    {"st", Dialect::controlShift},
    {"st-256color", Dialect::controlShift},
    {"terminator", Dialect::controlShift},
    {"terminology", Dialect::controlShift},
    {"termit", Dialect::controlShift},
    {"tilda", Dialect::controlShift},
    {"tilix", Dialect::controlShift},
    {"urxvt", Dialect::none},
    {"uxterm", Dialect::none},
    {"wezterm", Dialect::controlShift},
    {"xfce4-terminal", Dialect::controlShift},
    {"xterm", Dialect::none},
    {"yakuake", Dialect::controlShift},
};

std::optional<Dialect> terminalDialect(std::string_view name) {
  const auto lower = text::lowerCased(name);
  const auto found = std::ranges::find(terminals, std::string_view(lower), &Terminal::name);
  return found == std::end(terminals) ? std::nullopt : std::optional(found->dialect);
}

// The keys of one combination, and the group that has the letter.
struct Combination {
  std::vector<XKey> modifiers;
  XKey key = 0;
  std::optional<unsigned> group;
};

Combination combinationFor(KeyCode letter, const Keyboard& keyboard, unsigned presentGroup, Dialect dialect) {
  const auto keyIn = [&](unsigned group) {
    return letter == KeyCode::c ? keyboard.groups[group].c : keyboard.groups[group].v;
  };
  std::vector<XKey> modifiers{keyboard.control};
  if (dialect == Dialect::controlShift) {
    modifiers.push_back(keyboard.shift);
  }
  const auto count = static_cast<unsigned>(keyboard.groups.size());
  for (unsigned i = 0; i < count; ++i) {
    const unsigned group = (presentGroup + i) % count;
    if (const XKey key = keyIn(group); key != 0) {
      return {modifiers, key, group};
    }
  }
  return {{letter == KeyCode::c ? keyboard.control : keyboard.shift}, keyboard.insert, std::nullopt};
}

}  // namespace

Dialect dialectOf(std::string_view instanceName, std::string_view className) {
  if (const auto dialect = terminalDialect(className)) {
    return *dialect;
  }
  return terminalDialect(instanceName).value_or(Dialect::control);
}

std::vector<Step> steps(std::span<const KeyboardEvent> events, const Keyboard& keyboard, const Moment& moment,
                        Dialect dialect) {
  const auto letter = std::ranges::find_if(
      events, [](const auto& event) { return event.keyCode == KeyCode::c || event.keyCode == KeyCode::v; });
  if (letter == events.end() || dialect == Dialect::none) {
    return {};
  }
  const auto combination = combinationFor(letter->keyCode, keyboard, moment.group, dialect);
  if (combination.key == 0 || std::ranges::find(combination.modifiers, 0) != combination.modifiers.end()) {
    return {};
  }

  std::vector<Step> result;
  XKeys pressed = moment.pressed;
  const auto press = [&](XKey key) {
    result.push_back({Step::Kind::press, key});
    pressed.set(key);
  };
  const auto release = [&](XKey key) {
    result.push_back({Step::Kind::release, key});
    pressed.reset(key);
  };
  // Pressing modifiers while others are held may switch the group, so the group is set after them and restored at the
  // end.
  const auto lockGroup = [&](unsigned group) {
    if (keyboard.groups.size() > 1) {
      result.push_back({Step::Kind::lockGroup, static_cast<std::uint8_t>(group)});
    }
  };

  for (const auto& event : events) {
    if (event.keyCode == KeyCode::commandModifier && event.keyDown) {
      for (const XKey modifier : combination.modifiers) {
        if (!pressed[modifier]) {
          press(modifier);
        }
      }
      for (unsigned key = 0; key < pressed.size(); ++key) {
        const bool ours = std::ranges::find(combination.modifiers, key) != combination.modifiers.end();
        if (pressed[key] && keyboard.modifiers[key] && !ours) {
          release(static_cast<XKey>(key));
        }
      }
      lockGroup(combination.group.value_or(moment.lockedGroup));
    } else if (event.keyCode == KeyCode::commandModifier) {
      for (auto modifier = combination.modifiers.rbegin(); modifier != combination.modifiers.rend(); ++modifier) {
        release(*modifier);
      }
    } else if (event.keyCode == letter->keyCode && event.keyDown) {
      if (pressed[combination.key]) {
        release(combination.key);  // pressing a key that is already down would go unnoticed
      }
      press(combination.key);
    } else if (event.keyCode == letter->keyCode) {
      release(combination.key);
    }
  }
  lockGroup(moment.lockedGroup);
  return result;
}

}  // namespace quillmark::chord
