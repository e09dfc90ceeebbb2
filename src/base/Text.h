#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Text is UTF-8 in std::string everywhere. These are the few operations that look at characters.
namespace quillmark::text {

/// Replaces each maximal invalid part of a sequence by one U+FFFD (Unicode, "U+FFFD substitution of maximal
/// subparts"); valid input comes back unchanged.
std::string decodeUtf8(std::string_view bytes);

/// Full Unicode lower-casing without a language's own rules.
std::string lowerCased(std::string_view text);

/// Splits at every line feed, carriage return, vertical tab, form feed, U+0085, U+2028 and U+2029; a CR LF pair
/// is two of them and gives an empty piece. The pieces point into `text`.
std::vector<std::string_view> splitAtNewlines(std::string_view text);

/// Without the white space (Unicode White_Space: blanks, tab, newlines) at both ends. Points into `text`.
std::string_view trimmed(std::string_view text);

std::string replacingAll(std::string text, std::string_view pattern, std::string_view replacement);

/// Pieces between occurrences of `separator`, empty ones included. They point into `text`.
std::vector<std::string_view> split(std::string_view text, char separator);

/// Pieces between blanks: Unicode's space separators and the tab, not the newlines.
std::vector<std::string_view> splitAtBlanks(std::string_view text);

/// Whether the first character is white space, or one of those at which splitAtNewlines() splits.
bool startsWithWhitespace(std::string_view text);
bool startsWithNewline(std::string_view text);

/// The code point at `position`, which must be before the end and is moved past it. An invalid byte is a character of
/// its own with a negative value.
std::int32_t nextCharacter(std::string_view text, std::size_t& position);
/// Unicode White_Space.
bool isWhitespace(std::int32_t character);
/// A decimal digit of any script (Unicode Nd).
bool isDigit(std::int32_t character);
/// One of those at which splitAtNewlines() splits.
constexpr bool isNewline(std::int32_t c) { return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029; }

std::string joined(const std::vector<std::string>& pieces, std::string_view separator);

/// Negative, 0 or positive: runs of digits compare as numbers, everything else by code point, so that "2.9.0" comes
/// before "2.12.0". For versions.
int compareNumerically(std::string_view a, std::string_view b);

/// Extended grapheme clusters (UAX 29): what a user counts as characters.
std::size_t graphemeCount(std::string_view text);

/// "1.0" or "0.9": a number between 0 and 1 in tenths, whatever the locale.
std::string oneDecimal(int tenths);

}  // namespace quillmark::text
