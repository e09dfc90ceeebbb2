#pragma once

#include <string>
#include <string_view>

namespace quillmark::service {

enum class Casing { lower, capitalised, upper, mixed };

/// How the ASCII letters of a word are written. A single capital letter counts as capitalised.
Casing casingOf(std::string_view word);

/// A lower-case word written in a casing; mixed leaves it as it is.
std::string inCasing(std::string word, Casing casing);

/// The text with its first letter capitalised, if it is ASCII.
std::string capitalised(std::string text);

}  // namespace quillmark::service
