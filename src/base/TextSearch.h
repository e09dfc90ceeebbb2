#pragma once

#include <string>
#include <string_view>

namespace quillmark::text {

/// The form in which two texts are compared for a search that ignores case and diacritics: "Änderung" and "ANDERUNG"
/// have the same one, "ß" counts as "ss", "ø" as "o". Only what sits on a letter is a diacritic; the vowel signs of
/// Thai or Devanagari and the voicing marks of kana make other letters. The four letters i of Turkish are one letter
/// here, whatever the locale: Turkish pairs "I" with "ı" and "İ" with "i", and the dot is a diacritic.
std::string foldedForSearch(std::string_view text);

/// Whether the text holds the part under foldedForSearch(). Every text holds an empty part. To search many texts again
/// and again, fold each of them once.
bool localizedStandardContains(std::string_view text, std::string_view part);

}  // namespace quillmark::text
