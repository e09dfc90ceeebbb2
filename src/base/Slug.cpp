#include "base/Slug.h"

#include "base/Text.h"

namespace quillmark {

std::string slugify(std::string_view name) {
  std::string slug;
  bool atBorder = false;
  for (const char c : text::lowerCased(name)) {
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-') {
      if (atBorder && !slug.empty()) {
        slug += '-';
      }
      atBorder = false;
      slug += c;
    } else {
      atBorder = true;
    }
  }
  return slug;
}

}  // namespace quillmark
