#include "platform/posix/SystemInfo.h"

#include <charconv>
#include <clocale>
#include <filesystem>
#include <system_error>

#include <sys/utsname.h>

#include "base/Localization.h"
#include "base/Text.h"
#include "platform/InterfaceLanguage.h"
#include "platform/posix/IcuLocaleInfo.h"

namespace quillmark {

std::string executablePath() {
  std::error_code error;
  auto path = std::filesystem::read_symlink("/proc/self/exe", error).string();
  // Appended by the kernel once an update has replaced the running program's file (proc(5)).
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

std::string catalogueDirectory() {
  const auto directory = std::filesystem::path(executablePath()).parent_path();
  const auto installed = directory.parent_path() / "share/locale";
  std::error_code error;
  return (std::filesystem::exists(installed, error) ? installed
                                                    : directory.parent_path().parent_path() / "share/locale")
      .string();
}

const Bundle& bundle() {
  static const Bundle own = [] {
    auto name = std::filesystem::path(executablePath()).filename().string();
    return Bundle{name.empty() ? std::nullopt : std::optional(std::move(name)), "org.quillmark.Quillmark",
                  QUILLMARK_VERSION, QUILLMARK_BUILD_NUMBER, localization::availableLanguages(catalogueDirectory())};
  }();
  return own;
}

std::string useInterfaceLanguage(UserDefaults& defaults, const Bundle& bundle) {
  std::string code = effectiveLanguageCode(InterfaceLanguage(defaults).get(),
                                           preferredLocalizations(bundle.localizations, languagesOfEnvironment()));
  // The C locale is in force until a program sets the user's, and speaks English anyway.
  if (code != "en" || std::setlocale(LC_MESSAGES, nullptr) != std::string_view("C")) {
    localization::useLanguage(code, catalogueDirectory());
  }
  return code;
}

}  // namespace quillmark
