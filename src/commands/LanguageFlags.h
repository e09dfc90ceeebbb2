#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// The emoji flag of a language identifier such as "de_CH", else that of its language alone; nothing for a language
/// that is not in the table of 219 identifiers.
std::optional<std::string> languageFlag(std::string_view identifier);

}  // namespace quillmark
