#include "shell/LocaleViewModel.h"

#include "base/Localization.h"

namespace quillmark {

std::string LocaleViewModel::label(const std::string& identifier) const {
  return identifier == "none" ? tr("None") : locale_.displayName(identifier, identifier).value_or(identifier);
}

}  // namespace quillmark
