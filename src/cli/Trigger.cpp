#include "cli/Trigger.h"

#include <systemd/sd-bus.h>

#include "cli/Session.h"

namespace quillmark::cli {
namespace {

constexpr const char* busName = "org.quillmark.Quillmark";
constexpr const char* objectPath = "/org/quillmark/Quillmark";

}  // namespace

int trigger(const std::string& slug) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) {
    complain("there is no session bus to reach Quillmark on");
    return 1;
  }
  sd_bus_error error{};
  const int result =
      slug == "command-menu"
          ? sd_bus_call_method(bus, busName, objectPath, busName, "OpenCommandMenu", &error, nullptr, "")
          : sd_bus_call_method(bus, busName, objectPath, busName, "RunCommand", &error, nullptr, "s", slug.c_str());
  if (result < 0) {
    const bool notRunning = sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
                            sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0;
    complain(notRunning ? "Quillmark is not running"
                        : std::string("Quillmark did not answer: ") + (error.message != nullptr ? error.message : ""));
  }
  sd_bus_error_free(&error);
  sd_bus_flush_close_unref(bus);
  return result < 0 ? 1 : 0;
}

}  // namespace quillmark::cli
