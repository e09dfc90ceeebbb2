#include "base/TextSearch.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace quillmark::text {
namespace {

/// Decided by the canonical combining class: overlays, the points of Hebrew and Arabic, and marks above, below or
/// through letters in general.
bool isDiacritic(UChar32 c) {
  const auto combiningClass = u_getCombiningClass(c);
  return combiningClass == 1 || (combiningClass >= 10 && combiningClass <= 36) || combiningClass >= 200;
}

void append(UChar32 c, std::string& result) {
  char bytes[U8_MAX_LENGTH];
  int32_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, c);
  result.append(bytes, static_cast<std::size_t>(length));
}

void appendLetter(UChar32 letter, std::string& result) {
  switch (const UChar32 c = u_foldCase(letter, U_FOLD_CASE_DEFAULT)) {
    // These have no decomposition, although people type the plain letters for them.
    case U'ß':
      result += "ss";
      break;
    case U'ı':
      result += "i";
      break;
    case U'ø':
      result += "o";
      break;
    case U'ł':
      result += "l";
      break;
    case U'đ':
      result += "d";
      break;
    case U'æ':
      result += "ae";
      break;
    case U'œ':
      result += "oe";
      break;
    default:
      append(c, result);
  }
}

bool isAscii(unsigned char c) { return c < 0x80; }

/// `decomposed` is a buffer that the calls reuse.
void appendFolded(UChar32 c, const icu::Normalizer2& decomposing, icu::UnicodeString& decomposed, std::string& result) {
  if (isDiacritic(c)) {
    return;
  }
  if (!decomposing.getDecomposition(c, decomposed)) {
    appendLetter(c, result);
    return;
  }
  const std::size_t start = result.size();
  bool isAccented = false;
  for (int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
    if (const UChar32 part = decomposed.char32At(i); isDiacritic(part)) {
      isAccented = true;
    } else {
      appendLetter(part, result);
    }
  }
  if (!isAccented) {
    // The parts form a different letter, in which a search must not find the first part.
    result.resize(start);
    appendLetter(c, result);
  }
}

}  // namespace

std::string foldedForSearch(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto& composing = *icu::Normalizer2::getNFCInstance(status);
  const auto& decomposing = *icu::Normalizer2::getNFDInstance(status);
  const auto piece = [](std::string_view view) {
    return icu::StringPiece(view.data(), static_cast<int32_t>(view.size()));
  };
  std::string composed;
  if (!composing.isNormalizedUTF8(piece(text), status)) {
    icu::StringByteSink<std::string> sink(&composed);
    composing.normalizeUTF8(0, piece(text), sink, nullptr, status);
    text = composed;
  }

  std::string result;
  result.reserve(text.size());
  icu::UnicodeString decomposed;
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t i = 0; i < length;) {
    if (const char c = text[static_cast<std::size_t>(i)]; isAscii(static_cast<unsigned char>(c))) {
      result += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      ++i;
    } else {
      UChar32 character = 0;
      U8_NEXT_OR_FFFD(text.data(), i, length, character);
      appendFolded(character, decomposing, decomposed, result);
    }
  }
  return result;
}

bool localizedStandardContains(std::string_view text, std::string_view part) {
  return foldedForSearch(text).find(foldedForSearch(part)) != std::string::npos;
}

}  // namespace quillmark::text
