#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "support/Process.h"

namespace quillmark {

/// A reply of the X server that frees itself.
template <class T>
auto owned(T* reply) {
  return std::unique_ptr<T, decltype(&std::free)>(reply, &std::free);
}

/// A screen of its own (Xvfb) with a window manager (openbox), a clean home directory and somebody at the keyboard.
/// Throws std::runtime_error when it does not come up. The methods throw the same when what they need is not there.
class XSession {
 public:
  XSession();
  XSession(const XSession&) = delete;
  XSession& operator=(const XSession&) = delete;
  ~XSession();

  /// ":17"
  const std::string& display() const { return display_; }
  const std::filesystem::path& home() const { return home_; }
  /// What programs of the session get: the display, the home directory, no session bus, and little else.
  std::map<std::string, std::string>& environment() { return environment_; }

  std::unique_ptr<Process> start(const std::vector<std::string>& arguments,
                                 const std::filesystem::path& outputFile = "/dev/null") const;
  /// Runs a program to its end and returns its exit status.
  int run(const std::vector<std::string>& arguments, const std::filesystem::path& outputFile = "/dev/null") const;

  /// Ends the X server under everybody's feet.
  void endServer();

  // The keyboard. Keys are X key codes; names are those of keysyms ("c", "Return", "Control_L").
  /// setxkbmap's arguments, such as {"us,ru"}; returns when the new map is in force.
  void setKeyboardLayout(const std::vector<std::string>& arguments);
  void lockGroup(int group);
  int lockedGroup();
  xcb_keycode_t keyCode(std::string_view keysymName);
  /// On the keyboard itself, not by the extension for tests: what a person's fingers do.
  void press(xcb_keycode_t key);
  void release(xcb_keycode_t key);
  void press(std::string_view keysymName) { press(keyCode(keysymName)); }
  void release(std::string_view keysymName) { release(keyCode(keysymName)); }
  /// From now on keys come by the extension for tests, as from a program that serves a remote screen.
  void typeByTestExtension() { byTestExtension_ = true; }
  /// Presses the keys in order and releases them in the opposite order.
  void tap(const std::vector<std::string_view>& keysymNames);
  /// Letters, digits and blanks that stand on the first level of the present layout.
  void type(std::string_view text);
  /// Whether the server takes the key as pressed.
  bool isPressed(xcb_keycode_t key);

  // Windows that the window manager knows.
  struct Window {
    xcb_window_t id = 0;
    std::string title;
    pid_t pid = 0;
  };
  std::vector<Window> windows();
  /// Waits until the process has a window.
  Window waitForWindow(pid_t pid);
  xcb_window_t activeWindow();
  /// Brings it to the front as a task bar would, and waits until it is there.
  void activate(xcb_window_t window);
  void close(xcb_window_t window);
  struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
  };
  /// Where its content lies on the screen.
  Area areaOf(xcb_window_t window);
  /// Moves the pointer there as a hand does, a little way at least, and presses its first button.
  void click(int x, int y);

  /// Another client's window, mapped, with a class and a process id.
  xcb_window_t createWindow(const std::string& windowClass, pid_t pid, const std::string& title = "window");
  /// The keys that were pressed in the window since the last call, from its creation on.
  std::vector<xcb_keycode_t> keysPressedIn(xcb_window_t window);
  void setProperty(xcb_window_t window, const char* name, std::uint32_t value);
  /// Its bytes, whatever their type; empty when it is not there.
  std::string property(xcb_window_t window, const char* name);

  xcb_connection_t* connection() const { return connection_; }
  xcb_window_t root() const { return root_; }
  xcb_atom_t atom(std::string_view name);

 private:
  Window waitForWindow(const std::function<bool(const Window&)>& isWanted, const std::string& what);
  void tellWindowManager(xcb_window_t window, const char* what, std::uint32_t value);
  std::optional<std::uint32_t> numberProperty(xcb_window_t window, const char* name);
  void key(std::uint8_t type, xcb_keycode_t code);
  void findKeyboard();
  void waitForWindowManager();
  void sync();

  std::filesystem::path home_;
  std::map<std::string, std::string> environment_;
  std::string display_;
  std::unique_ptr<Process> server_;
  std::unique_ptr<Process> windowManager_;
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = 0;
  std::uint8_t firstInputEvent_ = 0;
  std::uint8_t keyboardDevice_ = 0;
  bool byTestExtension_ = false;
  std::map<std::string, xcb_atom_t, std::less<>> atoms_;
};

}  // namespace quillmark
