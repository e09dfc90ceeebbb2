#include "platform/posix/SystemInfo.h"

#include <charconv>
#include <filesystem>
#include <system_error>

#include <sys/utsname.h>

#include "base/Text.h"

namespace quillmark {

std::string executablePath() {
  std::error_code error;
  auto path = std::filesystem::read_symlink("/proc/self/exe", error).string();
  // What the kernel appends once an update has replaced the file of the running program (proc(5)).
  constexpr std::string_view replaced = " (deleted)";
  if (path.ends_with(replaced)) {
    path.resize(path.size() - replaced.size());
  }
  return path;
}

OperatingSystem parseOperatingSystem(std::string_view name, std::string_view release) {
  OperatingSystem system{std::string(name)};
  const auto parts = text::split(release, '.');
  const auto number = [&](std::size_t index) {
    int value = 0;
    if (index < parts.size()) {
      std::from_chars(parts[index].data(), parts[index].data() + parts[index].size(), value);
    }
    return value;
  };
  system.major = number(0);
  system.minor = number(1);
  system.patch = number(2);
  return system;
}

OperatingSystem operatingSystem() {
  utsname names{};
  if (uname(&names) != 0) {
    return {"Linux"};
  }
  return parseOperatingSystem(names.sysname, names.release);
}

Bundle bundle() {
  auto name = std::filesystem::path(executablePath()).filename().string();
  return {name.empty() ? std::nullopt : std::optional(std::move(name)), "org.quillmark.Quillmark", QUILLMARK_VERSION,
          QUILLMARK_BUILD_NUMBER};
}

}  // namespace quillmark
