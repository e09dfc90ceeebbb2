#pragma once

#include <string>
#include <vector>

#include "platform/UserDefaults.h"

namespace quillmark {

/// The value of `debugAppLanguage` that leaves the choice to the system.
inline constexpr const char* systemLanguage = "system";

/// The user's choice for this program: a code such as "de", or systemLanguage.
class InterfaceLanguage : public Setting<std::string> {
 public:
  explicit InterfaceLanguage(UserDefaults& defaults) : Setting(defaults, keys::debugAppLanguage) {}
};

/// The available languages (codes such as "de") that the user prefers, in the order of the user's language tags (such
/// as "de-AT"), each once.
std::vector<std::string> preferredLocalizations(const std::vector<std::string>& available,
                                                const std::vector<std::string>& preferredLanguages);

/// The code of the interface language: the user's choice for this program, else the first preferred one, else "en".
std::string effectiveLanguageCode(const std::string& debugAppLanguage, const std::vector<std::string>& preferred);

}  // namespace quillmark
