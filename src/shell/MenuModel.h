#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillmark {

/// One entry of a menu, as plain values.
struct MenuItem {
  enum class Kind {
    action,
    submenu,   ///< shows `children`; kept even when there are none
    divider,   ///< a line; the other members are ignored
    progress,  ///< shows that something is in progress; can't be chosen
  };

  Kind kind = Kind::action;
  std::string title = {};
  std::string symbol = {};  ///< name of the icon; empty for none
  bool enabled = true;
  std::string shortcut = {};           ///< "Ctrl+,": only shown, grabs no key
  std::function<void()> trigger = {};  ///< runs after the menu has closed
  std::vector<MenuItem> children = {};
  bool isAccented = false;  ///< shown in the accent colour
  std::string help = {};    ///< shown while the pointer rests on it

  static MenuItem action(std::string title, std::string symbol, std::function<void()> trigger, bool enabled = true) {
    return {Kind::action, std::move(title), std::move(symbol), enabled, {}, std::move(trigger), {}};
  }
  static MenuItem submenu(std::string title, std::string symbol, std::vector<MenuItem> children, bool enabled = true) {
    return {Kind::submenu, std::move(title), std::move(symbol), enabled, {}, {}, std::move(children)};
  }
  static MenuItem divider() { return {.kind = Kind::divider}; }
};

}  // namespace quillmark
