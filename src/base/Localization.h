#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// The text in the interface language. The English wording is the key and the fallback.
std::string tr(const char* english);

/// Marks a text of a table for translation; tr() is called on it where it is shown.
constexpr const char* trLater(const char* english) { return english; }

/// The same for a text with one parameter, which stands for the "{}" in it.
std::string tr(const char* english, std::string_view parameter);

/// Which language tr() speaks. Catalogues are GNU gettext's, `<directory>/<code>/LC_MESSAGES/quillmark.mo`.
namespace localization {

/// Takes effect at once, whether or not the system has a locale for that language; a language without a catalogue falls
/// back to English. Numbers and dates keep their locale. Changes the environment: call it before other threads start.
void useLanguage(const std::string& code, const std::string& directory);

/// English, and the languages with a catalogue, by code.
std::vector<std::string> availableLanguages(const std::string& directory);

/// LANGUAGE as it was before useLanguage(), for programs that this one starts.
std::optional<std::string> languageOfEnvironment();

}  // namespace localization
}  // namespace quillmark
