#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// The text in the interface language. The English wording is the key and the fallback.
std::string tr(const char* english);

/// Marks a text of a table for translation; tr() is called on it where it is shown.
constexpr const char* trLater(const char* english) { return english; }

/// The same for a text with one parameter, which stands for the "{}" in it.
std::string tr(const char* english, std::string_view parameter);

}  // namespace quillmark
