#include "platform/InterfaceLanguage.h"

#include <algorithm>

namespace quillmark {

std::vector<std::string> preferredLocalizations(const std::vector<std::string>& available,
                                                const std::vector<std::string>& preferredLanguages) {
  std::vector<std::string> result;
  for (const auto& tag : preferredLanguages) {
    const std::string code = tag.substr(0, tag.find('-'));
    if (std::ranges::find(available, code) != available.end() && std::ranges::find(result, code) == result.end()) {
      result.push_back(code);
    }
  }
  return result;
}

std::string effectiveLanguageCode(const std::string& debugAppLanguage, const std::vector<std::string>& preferred) {
  if (debugAppLanguage != systemLanguage) {
    return debugAppLanguage;
  }
  return preferred.empty() ? "en" : preferred.front();
}

}  // namespace quillmark
