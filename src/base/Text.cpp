#include "base/Text.h"

#include <algorithm>

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>
#include <unicode/utypes.h>

#include "base/Graphemes.h"

namespace quillmark::text {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

bool isAscii(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) {
      return false;
    }
  }
  return true;
}

bool isBlank(UChar32 c) { return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR; }

/// Pieces between the characters for which the condition holds.
template <class Condition>
std::vector<std::string_view> splitAt(std::string_view text, Condition isSeparator) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t here = position;
    if (isSeparator(nextCharacter(text, position))) {
      pieces.push_back(text.substr(start, here - start));
      start = position;
    }
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

/// Moves `position` back over one character.
UChar32 previousCharacter(std::string_view text, std::size_t& position) {
  const auto tail = text.substr(position > 4 ? position - 4 : 0, position > 4 ? 4 : position);
  const auto* bytes = reinterpret_cast<const uint8_t*>(tail.data());
  auto index = static_cast<int32_t>(tail.size());
  UChar32 c = 0;
  U8_PREV(bytes, 0, index, c);
  position -= tail.size() - static_cast<std::size_t>(index);
  return c;
}

}  // namespace

std::int32_t nextCharacter(std::string_view text, std::size_t& position) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  auto index = static_cast<int64_t>(position);
  UChar32 c = 0;
  U8_NEXT(bytes, index, static_cast<int64_t>(text.size()), c);
  position = static_cast<std::size_t>(index);
  return c;
}

bool isWhitespace(std::int32_t character) { return u_isUWhiteSpace(character) != 0; }

bool isDigit(std::int32_t character) { return u_isdigit(character) != 0; }

std::string decodeUtf8(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size());
  for (std::size_t position = 0; position < bytes.size();) {
    const std::size_t start = position;
    // U8_NEXT stops after a maximal invalid part, which is exactly what one U+FFFD replaces.
    if (nextCharacter(bytes, position) < 0) {
      result += replacementCharacter;
    } else {
      result.append(bytes.substr(start, position - start));
    }
  }
  return result;
}

std::string lowerCased(std::string_view text) {
  std::string result;
  if (isAscii(text)) {
    result.reserve(text.size());
    for (const char c : text) {
      result += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return result;
  }
  icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())))
      .toLower(icu::Locale::getRoot())
      .toUTF8String(result);
  return result;
}

std::vector<std::string_view> splitAtNewlines(std::string_view text) { return splitAt(text, isNewline); }

std::vector<std::string_view> splitAtBlanks(std::string_view text) { return splitAt(text, isBlank); }

bool startsWithWhitespace(std::string_view text) {
  std::size_t position = 0;
  return !text.empty() && isWhitespace(nextCharacter(text, position));
}

bool startsWithNewline(std::string_view text) {
  std::size_t position = 0;
  return !text.empty() && isNewline(nextCharacter(text, position));
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty()) {
    std::size_t position = 0;
    if (!isWhitespace(nextCharacter(text, position))) {
      break;
    }
    text.remove_prefix(position);
  }
  while (!text.empty()) {
    std::size_t position = text.size();
    if (!isWhitespace(previousCharacter(text, position))) {
      break;
    }
    text = text.substr(0, position);
  }
  return text;
}

std::string replacingAll(std::string text, std::string_view pattern, std::string_view replacement) {
  auto found = pattern.empty() ? std::string::npos : text.find(pattern);
  if (found == std::string::npos) {
    return text;
  }
  std::string result;
  result.reserve(text.size());
  std::size_t start = 0;
  for (; found != std::string::npos; found = text.find(pattern, start)) {
    result.append(text, start, found - start).append(replacement);
    start = found + pattern.size();
  }
  return result.append(text, start);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  for (;;) {
    const auto found = text.find(separator);
    pieces.push_back(text.substr(0, found));
    if (found == std::string_view::npos) {
      return pieces;
    }
    text.remove_prefix(found + 1);
  }
}

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string result;
  for (const auto& piece : pieces) {
    if (&piece != &pieces.front()) {
      result += separator;
    }
    result += piece;
  }
  return result;
}

int compareNumerically(std::string_view a, std::string_view b) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  // Removes the run of digits at the start of the text and returns it without leading zeros.
  const auto takeNumber = [&isDigit](std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
  };
  while (!a.empty() && !b.empty()) {
    if (isDigit(a.front()) && isDigit(b.front())) {
      const auto left = takeNumber(a);
      const auto right = takeNumber(b);
      if (left.size() != right.size()) {
        return left.size() < right.size() ? -1 : 1;
      }
      if (const int order = left.compare(right); order != 0) {
        return order;
      }
    } else {
      if (a.front() != b.front()) {
        return static_cast<unsigned char>(a.front()) < static_cast<unsigned char>(b.front()) ? -1 : 1;
      }
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

std::size_t graphemeCount(std::string_view text) { return GraphemeTable().encode(text).codes.size(); }

std::string oneDecimal(int tenths) { return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10); }

}  // namespace quillmark::text
