#pragma once

#include <string>
#include <vector>

struct sd_bus;

namespace quillmark {

/// What a screen reader gets to know of one object of a program.
struct Accessible {
  std::string owner;  ///< its program's name on the bus
  std::string path;
  std::string role;  ///< such as "push button"
  std::string name;
  std::string line;  ///< role, name, states and text, indented by its depth
};

/// The accessibility bus of a session. All methods throw std::runtime_error when nobody answers.
class AccessibilityBus {
 public:
  /// Has the session bus start the accessibility bus if need be.
  explicit AccessibilityBus(const std::string& sessionBusAddress);
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;
  ~AccessibilityBus();

  /// All that shows of the program, from its windows down, but for what a screen reader passes over and has no name.
  std::vector<Accessible> read(const std::string& program);
  /// Does the object's action of this name, such as "Press".
  void act(const Accessible& object, const std::string& action);
  /// The path of the object that was the last to say that it has the keyboard.
  const std::string& lastFocused();

 private:
  void readInside(const Accessible& outer, const std::string& indent, std::vector<Accessible>& found);

  sd_bus* bus_ = nullptr;
  std::string lastFocused_;
};

}  // namespace quillmark
