#include "support/AccessibleTree.h"

#include <memory>
#include <stdexcept>
#include <string_view>

#include <systemd/sd-bus.h>

namespace quillmark {
namespace {

constexpr std::uint64_t deadline = 5'000'000;  // microseconds
constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* action = "org.a11y.atspi.Action";

struct Unref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, Unref>;

template <class... Arguments>
Message call(sd_bus* bus, const Accessible& object, const char* interface, const char* method,
             const char* signature = "", Arguments... arguments) {
  sd_bus_error error = SD_BUS_ERROR_NULL;
  sd_bus_message* reply = nullptr;
  if (sd_bus_call_method(bus, object.owner.c_str(), object.path.c_str(), interface, method, &error, &reply, signature,
                         arguments...) < 0) {
    const std::string reason = error.message != nullptr ? error.message : "no answer";
    sd_bus_error_free(&error);
    throw std::runtime_error(std::string("accessibility: ") + method + ": " + reason);
  }
  return Message(reply);
}

std::string textOf(const Message& message) {
  const char* text = nullptr;
  sd_bus_message_read(message.get(), "s", &text);
  return text != nullptr ? text : "";
}

std::string nameOf(sd_bus* bus, const Accessible& object) {
  const auto reply = call(bus, object, "org.freedesktop.DBus.Properties", "Get", "ss", accessible, "Name");
  sd_bus_message_enter_container(reply.get(), 'v', "s");
  return textOf(reply);
}

std::vector<Accessible> childrenOf(sd_bus* bus, const Accessible& object) {
  const auto reply = call(bus, object, accessible, "GetChildren");
  std::vector<Accessible> children;
  const char* owner = nullptr;
  const char* path = nullptr;
  sd_bus_message_enter_container(reply.get(), 'a', "(so)");
  while (sd_bus_message_read(reply.get(), "(so)", &owner, &path) > 0) {
    children.push_back({owner, path});
  }
  return children;
}

sd_bus* connect(const std::string& address) {
  sd_bus* bus = nullptr;
  sd_bus_new(&bus);
  if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0) {
    sd_bus_unref(bus);
    throw std::runtime_error("accessibility: no bus at " + address);
  }
  sd_bus_set_method_call_timeout(bus, deadline);
  return bus;
}

int stateChanged(sd_bus_message* signal, void* lastFocused, sd_bus_error*) {
  const char* state = nullptr;
  int on = 0;
  if (sd_bus_message_read(signal, "si", &state, &on) > 0 && std::string_view(state) == "focused" && on != 0) {
    *static_cast<std::string*>(lastFocused) = sd_bus_message_get_path(signal);
  }
  return 0;
}

}  // namespace

AccessibilityBus::AccessibilityBus(const std::string& sessionBusAddress) {
  auto* const session = connect(sessionBusAddress);
  const auto address = textOf(call(session, {"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress"));
  sd_bus_flush_close_unref(session);
  bus_ = connect(address);
  // Programs only tell what somebody wants to hear.
  sd_bus_match_signal(bus_, nullptr, nullptr, nullptr, "org.a11y.atspi.Event.Object", "StateChanged", stateChanged,
                      &lastFocused_);
  call(bus_, {"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"}, "org.a11y.atspi.Registry", "RegisterEvent", "s",
       "object:state-changed:focused");
}

AccessibilityBus::~AccessibilityBus() { sd_bus_flush_close_unref(bus_); }

std::vector<Accessible> AccessibilityBus::read(const std::string& program) {
  std::vector<Accessible> found;
  for (const auto& each : childrenOf(bus_, {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"})) {
    if (nameOf(bus_, each) == program) {
      readInside(each, "", found);
    }
  }
  return found;
}

void AccessibilityBus::readInside(const Accessible& outer, const std::string& indent, std::vector<Accessible>& found) {
  for (auto& object : childrenOf(bus_, outer)) {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    sd_bus_message_read(call(bus_, object, accessible, "GetState").get(), "au", 2, &low, &high);
    const auto is = [low](int state) { return (low >> state & 1) != 0; };  // by their numbers on the bus
    if (!is(25)) {                                                         // showing
      continue;
    }
    object.role = textOf(call(bus_, object, accessible, "GetRoleName"));
    object.name = nameOf(bus_, object);
    if (object.role == "filler" && object.name.empty()) {
      readInside(object, indent, found);
      continue;
    }
    object.line = indent + object.role;
    object.line += " '" + object.name + '\'';
    for (const auto& [state, word] :
         {std::pair(4, " checked"), {10, " expanded"}, {12, " focused"}, {23, " selected"}}) {
      object.line += is(state) ? word : "";
    }
    object.line += is(8) ? "" : " disabled";
    if (object.role == "text") {
      object.line += " [" + textOf(call(bus_, object, "org.a11y.atspi.Text", "GetText", "ii", 0, -1)) + ']';
    }
    found.push_back(object);
    readInside(object, indent + "  ", found);
  }
}

void AccessibilityBus::act(const Accessible& object, const std::string& wanted) {
  const auto reply = call(bus_, object, action, "GetActions");
  const char* name = nullptr;
  sd_bus_message_enter_container(reply.get(), 'a', "(sss)");
  for (int i = 0; sd_bus_message_read(reply.get(), "(sss)", &name, nullptr, nullptr) > 0; ++i) {
    if (wanted == name) {
      call(bus_, object, action, "DoAction", "i", i);
      return;
    }
  }
  throw std::runtime_error("accessibility: \"" + object.name + "\" has no action " + wanted);
}

const std::string& AccessibilityBus::lastFocused() {
  while (sd_bus_process(bus_, nullptr) > 0) {
  }
  return lastFocused_;
}

}  // namespace quillmark
