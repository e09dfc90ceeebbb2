#include "support/XSession.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace quillmark {
namespace {

using namespace std::chrono_literals;

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error("X session: " + what); }

xkb_keymap* readKeymap(xcb_connection_t* connection, xkb_context* context) {
  xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                              XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
  return xkb_x11_keymap_new_from_device(context, connection, xkb_x11_get_core_keyboard_device_id(connection),
                                        XKB_KEYMAP_COMPILE_NO_FLAGS);
}

}  // namespace

XSession::XSession() {
  auto pattern = (std::filesystem::temp_directory_path() / "quillmark-session-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    fail("no home directory");
  }
  home_ = pattern;
  const char* path = std::getenv("PATH");
  environment_ = {{"HOME", home_},
                  {"XDG_RUNTIME_DIR", home_},
                  {"PATH", path != nullptr ? path : "/usr/bin:/bin"},
                  {"LANG", "C.UTF-8"},
                  {"LC_ALL", "C.UTF-8"},
                  {"NO_AT_BRIDGE", "1"},
                  {"GSETTINGS_BACKEND", "memory"},
                  {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};

  int ready[2];
  if (pipe2(ready, O_CLOEXEC) != 0) {
    fail("no pipe");
  }
  server_ =
      std::make_unique<Process>(std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ready[1]), "-screen", "0",
                                                         "1280x800x24", "-nolisten", "tcp", "-noreset"},
                                environment_, Process::Streams{}, ready[1]);
  ::close(ready[1]);
  std::string number;
  pollfd wait{ready[0], POLLIN, 0};
  while (poll(&wait, 1, 30000) == 1) {
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1 || byte == '\n') {
      break;
    }
    number += byte;
  }
  ::close(ready[0]);
  if (number.empty()) {
    fail("the X server did not come up");
  }
  display_ = ":" + number;
  environment_["DISPLAY"] = display_;

  connection_ = xcb_connect(display_.c_str(), nullptr);
  if (xcb_connection_has_error(connection_) != 0) {
    fail("no connection to " + display_);
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  findKeyboard();

  windowManager_ = start({"openbox"});
  waitForWindowManager();
}

// A window manager that is still starting may overlook a window that is shown. So ask it a question until it answers:
// how wide its frames are.
void XSession::waitForWindowManager() {
  const auto window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, 0, nullptr);
  const bool answered = waitUntil([&] {
    tellWindowManager(window, "_NET_REQUEST_FRAME_EXTENTS", 0);
    return numberProperty(window, "_NET_FRAME_EXTENTS").has_value();
  });
  xcb_destroy_window(connection_, window);
  sync();
  if (!answered) {
    fail("the window manager did not come up");
  }
}

XSession::~XSession() {
  windowManager_.reset();
  if (connection_ != nullptr) {
    xcb_disconnect(connection_);
  }
  server_.reset();
  std::error_code ignored;
  std::filesystem::remove_all(home_, ignored);
}

std::unique_ptr<Process> XSession::start(const std::vector<std::string>& arguments,
                                         const std::filesystem::path& outputFile) const {
  return std::make_unique<Process>(arguments, environment_, Process::Streams{.output = outputFile});
}

int XSession::run(const std::vector<std::string>& arguments, const std::filesystem::path& outputFile) const {
  const auto status = start(arguments, outputFile)->exitStatus();
  if (!status) {
    fail(arguments.front() + " did not end");
  }
  return *status;
}

void XSession::endServer() {
  server_->signal(SIGKILL);
  server_->end();
}

// --- keyboard

// The keyboard of the virtual server takes events through the test extension too, when they name it as their device.
// They then go the way of a real keyboard's events, beside those of programs that simulate keys.
void XSession::findKeyboard() {
  const auto* extension = xcb_get_extension_data(connection_, &xcb_input_id);
  if (extension == nullptr || extension->present == 0) {
    fail("no input extension");
  }
  firstInputEvent_ = extension->first_event;
  auto version =
      owned(xcb_input_xi_query_version_reply(connection_, xcb_input_xi_query_version(connection_, 2, 2), {}));
  auto devices =
      owned(xcb_input_xi_query_device_reply(connection_, xcb_input_xi_query_device(connection_, 0), nullptr));
  if (!devices) {
    fail("no input devices");
  }
  for (auto it = xcb_input_xi_query_device_infos_iterator(devices.get()); it.rem != 0;
       xcb_input_xi_device_info_next(&it)) {
    const std::string_view name(xcb_input_xi_device_info_name(it.data), it.data->name_len);
    if (it.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD && name.find("XTEST") == std::string_view::npos) {
      keyboardDevice_ = static_cast<std::uint8_t>(it.data->deviceid);
    }
  }
  if (keyboardDevice_ == 0) {
    fail("no keyboard");
  }
}

void XSession::key(std::uint8_t type, xcb_keycode_t code) {
  if (byTestExtension_) {
    xcb_test_fake_input(connection_, type == XCB_INPUT_DEVICE_KEY_PRESS ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, 0, 0,
                        0, 0, 0);
  } else {
    xcb_test_fake_input(connection_, static_cast<std::uint8_t>(firstInputEvent_ + type), code, 0, 0, 0, 0,
                        keyboardDevice_);
  }
  sync();
}

void XSession::sync() { owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)); }

void XSession::press(xcb_keycode_t code) { key(XCB_INPUT_DEVICE_KEY_PRESS, code); }
void XSession::release(xcb_keycode_t code) { key(XCB_INPUT_DEVICE_KEY_RELEASE, code); }

void XSession::tap(const std::vector<std::string_view>& keysymNames) {
  for (const auto name : keysymNames) {
    press(name);
  }
  for (auto name = keysymNames.rbegin(); name != keysymNames.rend(); ++name) {
    release(*name);
  }
}

void XSession::type(std::string_view text) {
  for (const char letter : text) {
    const std::string name = letter == ' ' ? "space" : letter == '\n' ? "Return" : std::string(1, letter);
    tap({name});
  }
}

bool XSession::isPressed(xcb_keycode_t code) {
  auto keys = owned(xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr));
  return keys && (keys->keys[code / 8] >> (code % 8) & 1) != 0;
}

void XSession::setKeyboardLayout(const std::vector<std::string>& arguments) {
  std::vector<std::string> command{"setxkbmap", "-option", ""};
  command.insert(command.end(), arguments.begin(), arguments.end());
  if (run(command) != 0) {
    fail("setxkbmap failed");
  }
  sync();
}

void XSession::lockGroup(int group) {
  xcb_xkb_latch_lock_state(connection_, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, static_cast<std::uint8_t>(group), 0, 0, 0);
  sync();
}

int XSession::lockedGroup() {
  owned(xcb_xkb_use_extension_reply(connection_, xcb_xkb_use_extension(connection_, 1, 0), nullptr));
  auto state =
      owned(xcb_xkb_get_state_reply(connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
  return state ? state->lockedGroup : -1;
}

xcb_keycode_t XSession::keyCode(std::string_view keysymName) {
  const auto wanted = xkb_keysym_from_name(std::string(keysymName).c_str(), XKB_KEYSYM_NO_FLAGS);
  std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                     xkb_context_unref);
  std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(readKeymap(connection_, context.get()),
                                                                  xkb_keymap_unref);
  if (!keymap) {
    fail("no keyboard map");
  }
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap.get()); ++layout) {
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap.get()); code <= xkb_keymap_max_keycode(keymap.get());
         ++code) {
      const xkb_keysym_t* symbols = nullptr;
      if (xkb_keymap_key_get_syms_by_level(keymap.get(), code, layout, 0, &symbols) == 1 && symbols[0] == wanted) {
        return static_cast<xcb_keycode_t>(code);
      }
    }
  }
  fail("no key has " + std::string(keysymName));
}

// --- windows

xcb_atom_t XSession::atom(std::string_view name) {
  if (const auto known = atoms_.find(name); known != atoms_.end()) {
    return known->second;
  }
  auto reply = owned(xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  const xcb_atom_t value = reply ? reply->atom : xcb_atom_t{};
  return atoms_.emplace(name, value).first->second;
}

std::string XSession::property(xcb_window_t window, const char* name) {
  auto reply = owned(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 65536), nullptr));
  if (!reply) {
    return {};
  }
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::optional<std::uint32_t> XSession::numberProperty(xcb_window_t window, const char* name) {
  const auto bytes = property(window, name);
  std::uint32_t value = 0;
  if (bytes.size() < sizeof value) {
    return std::nullopt;
  }
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

std::vector<XSession::Window> XSession::windows() {
  const auto list = property(root_, "_NET_CLIENT_LIST");
  std::vector<Window> result;
  for (std::size_t at = 0; at + sizeof(xcb_window_t) <= list.size(); at += sizeof(xcb_window_t)) {
    Window window;
    std::memcpy(&window.id, list.data() + at, sizeof window.id);
    window.title = property(window.id, "_NET_WM_NAME");
    window.pid = static_cast<pid_t>(numberProperty(window.id, "_NET_WM_PID").value_or(0));
    result.push_back(std::move(window));
  }
  return result;
}

XSession::Window XSession::waitForWindow(const std::function<bool(const Window&)>& isWanted, const std::string& what) {
  std::vector<Window> all;
  auto found = all.end();
  if (!waitUntil([&] {
        all = windows();
        found = std::ranges::find_if(all, isWanted);
        return found != all.end();
      })) {
    fail("no window of " + what);
  }
  return *found;
}

XSession::Window XSession::waitForWindow(pid_t pid) {
  return waitForWindow([pid](const Window& window) { return window.pid == pid; }, "process " + std::to_string(pid));
}

xcb_window_t XSession::activeWindow() { return numberProperty(root_, "_NET_ACTIVE_WINDOW").value_or(0); }

XSession::Area XSession::areaOf(xcb_window_t window) {
  const auto size = owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  const auto place = owned(xcb_translate_coordinates_reply(
      connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr));
  if (!size || !place) {
    fail("the window is gone");
  }
  return {place->dst_x, place->dst_y, size->width, size->height};
}

void XSession::click(int x, int y) {
  const auto at = [](int value) { return std::to_string(value); };
  if (run({"xdotool", "mousemove", at(x - 3), at(y - 3), "mousemove", at(x), at(y), "click", "1"}) != 0) {
    fail("the pointer does not move");
  }
}

void XSession::tellWindowManager(xcb_window_t window, const char* what, std::uint32_t value) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atom(what);
  message.data.data32[0] = value;
  xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
}

void XSession::activate(xcb_window_t window) {
  const auto focused = [&] {
    auto focus = owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return activeWindow() == window && focus && focus->focus > XCB_INPUT_FOCUS_POINTER_ROOT;
  };
  tellWindowManager(window, "_NET_ACTIVE_WINDOW", 2);  // from a pager: no stealing to suspect
  if (!waitUntil(focused)) {
    fail("the window does not come to the front");
  }
}

void XSession::close(xcb_window_t window) {
  xcb_destroy_window(connection_, window);
  sync();
}

xcb_window_t XSession::createWindow(const std::string& windowClass, pid_t pid, const std::string& title) {
  const auto window = xcb_generate_id(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 20, 20, 200, 100, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  std::string names = windowClass;  // instance and class are the same here
  names += '\0';
  names += windowClass;
  names += '\0';
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(names.size()), names.data());
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_NAME"), atom("UTF8_STRING"), 8,
                      static_cast<std::uint32_t>(title.size()), title.data());
  if (pid != 0) {
    setProperty(window, "_NET_WM_PID", static_cast<std::uint32_t>(pid));
  }
  xcb_map_window(connection_, window);
  sync();
  waitForWindow([=](const Window& known) { return known.id == window; }, windowClass);
  return window;
}

std::vector<xcb_keycode_t> XSession::keysPressedIn(xcb_window_t window) {
  sync();
  std::vector<xcb_keycode_t> keys;
  while (const auto event = owned(xcb_poll_for_event(connection_))) {
    const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
    if ((event->response_type & 0x7f) == XCB_KEY_PRESS && press.event == window) {
      keys.push_back(press.detail);
    }
  }
  return keys;
}

void XSession::setProperty(xcb_window_t window, const char* name, std::uint32_t value) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), XCB_ATOM_CARDINAL, 32, 1, &value);
  sync();
}

}  // namespace quillmark
