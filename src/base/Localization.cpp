#include "base/Localization.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <filesystem>

#include <libintl.h>

// Counts changes to what catalogues depend on; incrementing it makes the C library look them up again ("Being a gettext
// grok" in the manual of GNU gettext).
extern "C" int _nl_msg_cat_cntr;  // NOLINT(bugprone-reserved-identifier)

namespace quillmark {
namespace {

constexpr const char* domain = "quillmark";
constexpr const char* languageVariable = "LANGUAGE";

std::optional<std::string> presentLanguage() {
  const char* value = std::getenv(languageVariable);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

/// The environment variable before the first useLanguage(); the outer optional is empty until then.
std::optional<std::optional<std::string>>& originalLanguage() {
  static std::optional<std::optional<std::string>> language;
  return language;
}

}  // namespace

std::string tr(const char* english) { return dgettext(domain, english); }

std::string tr(const char* english, std::string_view parameter) {
  std::string text = tr(english);
  if (const auto place = text.find("{}"); place != std::string::npos) {
    text.replace(place, 2, parameter);
  }
  return text;
}

namespace localization {

void useLanguage(const std::string& code, const std::string& directory) {
  if (!originalLanguage()) {
    originalLanguage() = presentLanguage();
  }
  // With the locale "C" nothing is ever translated, and a locale that is not installed can't be set.
  const char* locale = std::setlocale(LC_MESSAGES, "");
  if (locale == nullptr || locale == std::string_view("C") || locale == std::string_view("POSIX")) {
    std::setlocale(LC_MESSAGES, "C.UTF-8");
  }
  setenv(languageVariable, code.c_str(), 1);
  bindtextdomain(domain, directory.c_str());
  bind_textdomain_codeset(domain, "UTF-8");
  ++_nl_msg_cat_cntr;
}

std::vector<std::string> availableLanguages(const std::string& directory) {
  std::vector<std::string> codes{"en"};
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    if (std::filesystem::exists(entry.path() / "LC_MESSAGES" / (std::string(domain) + ".mo"), error)) {
      codes.push_back(entry.path().filename().string());
    }
  }
  std::ranges::sort(codes);
  return codes;
}

std::optional<std::string> languageOfEnvironment() {
  return originalLanguage() ? *originalLanguage() : presentLanguage();
}

}  // namespace localization
}  // namespace quillmark
