#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillmark {

/// One row of a menu as plain values, for whatever draws it.
struct MenuItem {
  enum class Kind { action, submenu, divider, progress };

  Kind kind = Kind::action;
  std::string title;
  std::string symbol;  ///< symbol name of the icon; may be empty
  bool enabled = true;
  std::string shortcut;  ///< for show only, such as "Ctrl+,"
  std::function<void()> trigger;
  std::vector<MenuItem> children;

  static MenuItem action(std::string title, std::string symbol, std::function<void()> trigger, bool enabled = true) {
    return {Kind::action, std::move(title), std::move(symbol), enabled, {}, std::move(trigger), {}};
  }
  static MenuItem submenu(std::string title, std::string symbol, std::vector<MenuItem> children, bool enabled = true) {
    return {Kind::submenu, std::move(title), std::move(symbol), enabled, {}, {}, std::move(children)};
  }
  static MenuItem divider() { return {Kind::divider, {}, {}, true, {}, {}, {}}; }
};

}  // namespace quillmark
