#pragma once

#include <string>
#include <vector>

#include "platform/LocaleInfo.h"

namespace quillmark {

/// The dialects that the model can be asked to prefer.
class LocaleViewModel {
 public:
  explicit LocaleViewModel(const LocaleInfo& locale) : locale_(locale) {}

  /// Identifiers in the order of the picker; the first, "none", means no dialect.
  const std::vector<std::string> locales{
      "none",  "en_US", "en_GB", "en_CA", "en_AU", "en_IN", "de_DE", "de_AT", "de_CH", "de_IT",
      "de_LI", "es_ES", "es_US", "es_MX", "fr_FR", "fr_CA", "fr_CH", "fr_BE", "fr_CI", "fr_CG",
      "it_IT", "pt_BR", "pt_PT", "ar_SA", "ar_AE", "ar_EG", "ar_MA", "ar_TN",
  };

  /// The dialect's name in the dialect itself.
  std::string label(const std::string& identifier) const;

 private:
  const LocaleInfo& locale_;
};

}  // namespace quillmark
