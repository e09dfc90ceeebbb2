#include "base/Localization.h"

#include <libintl.h>

namespace quillmark {

std::string tr(const char* english) { return dgettext("quillmark", english); }

std::string tr(const char* english, std::string_view parameter) {
  std::string text = tr(english);
  if (const auto place = text.find("{}"); place != std::string::npos) {
    text.replace(place, 2, parameter);
  }
  return text;
}

}  // namespace quillmark
