#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// The URL-safe form of a name: lower-cased, split at every code point that is not an ASCII letter, digit or "-", empty
/// pieces dropped, joined by "-". "Fix Grammar & Spelling" gives "fix-grammar-spelling". Slugs are not unique.
std::string slugify(std::string_view name);

}  // namespace quillmark
