#pragma once

#include <string>
#include <string_view>

namespace quillmark::text {

/// The form in which texts are compared by a search that ignores case and diacritics: "Änderung" and "ANDERUNG" have
/// the same form, "ß" counts as "ss", "ø" as "o". Only a mark on a letter is a diacritic; the vowel signs of Thai and
/// Devanagari and the voicing marks of kana make different letters. The four Turkish letters i are one letter here,
/// whatever the locale: Turkish pairs "I" with "ı" and "İ" with "i", and the dot is a diacritic.
std::string foldedForSearch(std::string_view text);

/// Whether the text contains the part, both in the form of foldedForSearch(). Every text contains the empty text. To
/// search the same texts repeatedly, fold each of them once.
bool localizedStandardContains(std::string_view text, std::string_view part);

}  // namespace quillmark::text
