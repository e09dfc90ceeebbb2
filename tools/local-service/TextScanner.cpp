#include "local-service/TextScanner.h"

#include <memory>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace quillmark::service {
namespace {

constexpr std::string_view blanks = " \t\r\n\f\v";
constexpr std::string_view typographicApostrophe = "\u2019";

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }

/// The length of the letter at the front in bytes, or 0. A combining mark counts as part of a word.
std::size_t letterAt(std::string_view text) {
  if (text.empty()) {
    return 0;
  }
  if (static_cast<unsigned char>(text.front()) < 0x80) {
    return isAsciiLetter(text.front()) ? 1 : 0;
  }
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  int64_t index = 0;
  UChar32 c = 0;
  U8_NEXT(bytes, index, static_cast<int64_t>(text.size()), c);
  const bool inWord = c > 0 && (u_isalpha(c) || u_charType(c) == U_NON_SPACING_MARK);
  return inWord ? static_cast<std::size_t>(index) : 0;
}

std::size_t apostropheAt(std::string_view text) {
  if (text.starts_with('\'')) {
    return 1;
  }
  return text.starts_with(typographicApostrophe) ? typographicApostrophe.size() : 0;
}

std::size_t wordAt(std::string_view text) {
  std::size_t end = 0;
  for (;;) {
    if (const auto letter = letterAt(text.substr(end)); letter > 0) {
      end += letter;
      continue;
    }
    const auto apostrophe = end > 0 ? apostropheAt(text.substr(end)) : 0;
    if (apostrophe == 0 || letterAt(text.substr(end + apostrophe)) == 0) {
      return end;
    }
    end += apostrophe;
  }
}

/// The length of code, a tag or a fenced block that begins at the front, or 0. What never closes is plain text.
std::size_t protectedSpanAt(std::string_view text, bool atLineStart) {
  if (atLineStart && text.starts_with("```")) {
    const auto close = text.find("\n```", 3);
    return close == std::string_view::npos ? text.size() : close + 4;
  }
  if (text.front() == '`') {
    const auto close = text.find_first_of("`\n", 1);
    return close == std::string_view::npos || text[close] == '\n' ? 0 : close + 1;
  }
  if (text.front() == '<' && text.size() > 1 && (isAsciiLetter(text[1]) || text[1] == '/' || text[1] == '!')) {
    const auto close = text.find_first_of("<>", 1);
    return close == std::string_view::npos || text[close] == '<' ? 0 : close + 1;
  }
  return 0;
}

/// Whether a run without blanks is an address, a path, an identifier or anything else that isn't prose.
bool isCode(std::string_view token) {
  constexpr std::string_view aroundProse = ".,;:!?\"'()[]*_";
  const auto first = token.find_first_not_of(aroundProse);
  if (first == std::string_view::npos) {
    return false;
  }
  const auto core = token.substr(first, token.find_last_not_of(aroundProse) - first + 1);
  if (core.find_first_of("0123456789_@\\/{}=<>#$%^*|~+&()[]:") != std::string_view::npos ||
      (core.front() == '-' && core.size() > 1)) {
    return true;
  }
  for (std::size_t i = 1; i + 1 < core.size(); ++i) {
    if (core[i] == '.' && isAsciiLetter(core[i - 1]) && isAsciiLetter(core[i + 1])) {
      return true;
    }
  }
  for (std::size_t i = 1; i < core.size(); ++i) {
    if (isLower(core[i - 1]) && isUpper(core[i])) {
      return true;
    }
  }
  return token.size() > core.size() && token.find("()") != std::string_view::npos;
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::vector<Piece> scan() {
    while (position_ < text_.size()) {
      const auto rest = text_.substr(position_);
      const bool atLineStart = position_ == 0 || text_[position_ - 1] == '\n';
      if (const auto length = protectedSpanAt(rest, atLineStart); length > 0) {
        take(length, false);
      } else if (blanks.find(rest.front()) != std::string_view::npos) {
        take(std::min(rest.find_first_not_of(blanks), rest.size()), false);
      } else {
        scanToken(rest.substr(0, std::max<std::size_t>(1, tokenLength(rest))));
      }
    }
    return std::move(pieces_);
  }

 private:
  static std::size_t tokenLength(std::string_view rest) {
    for (std::size_t i = 0; i < rest.size(); ++i) {
      if (blanks.find(rest[i]) != std::string_view::npos) {
        return i;
      }
      if (i > 0 && (rest[i] == '`' || rest[i] == '<') && protectedSpanAt(rest.substr(i), false) > 0) {
        return i;
      }
    }
    return rest.size();
  }

  void scanToken(std::string_view token) {
    if (isCode(token)) {
      take(token.size(), false);
      return;
    }
    const auto end = position_ + token.size();
    while (position_ < end) {
      const auto rest = text_.substr(position_, end - position_);
      if (const auto word = wordAt(rest); word > 0) {
        take(word, true);
      } else {
        std::size_t length = 1;
        while (length < rest.size() && letterAt(rest.substr(length)) == 0) {
          ++length;
        }
        take(length, false);
      }
    }
  }

  void take(std::size_t length, bool isWord) {
    pieces_.push_back({text_.substr(position_, length), isWord});
    position_ += length;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::vector<Piece> pieces_;
};

}  // namespace

std::vector<Piece> scanPieces(std::string_view text) { return Scanner(text).scan(); }

std::vector<std::string_view> scanSentences(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createSentenceInstance(icu::Locale("en@ss=standard"), status));
  const std::unique_ptr<UText, decltype(&utext_close)> utf8(
      utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status), &utext_close);
  if (U_SUCCESS(status)) {
    breaks->setText(utf8.get(), status);
  }
  if (U_FAILURE(status)) {
    return {text};
  }
  std::vector<std::string_view> result;
  for (int32_t start = breaks->first(), end = breaks->next(); end != icu::BreakIterator::DONE;
       start = end, end = breaks->next()) {
    result.push_back(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
  }
  return result;
}

}  // namespace quillmark::service
