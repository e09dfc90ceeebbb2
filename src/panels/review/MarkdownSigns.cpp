#include "panels/review/MarkdownSigns.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/Text.h"

namespace quillmark {

void MarkdownSigns::append(std::string_view chunk) {
  for (std::size_t position = 0; position < chunk.size() && !found_;) {
    const auto c = text::nextCharacter(chunk, position);
    backticks_ = c == '`' ? backticks_ + 1 : 0;
    // Every one of them must see the character, so no short-circuit here.
    const bool ends[] = {stars_.ends(c == '*'),  underscores_.ends(c == '_'),
                         code_.ends(c == '`'),   backticks_ == 6,
                         struck_.ends(c == '~'), endsLink(c),
                         endsTableRow(c),        endsStart(c)};
    found_ = std::ranges::find(ends, true) != std::end(ends);
  }
}

bool MarkdownSigns::Enclosed::ends(bool isMark) {
  if (isMark) {
    return std::exchange(state_, State::marked) == State::inside;
  }
  if (state_ == State::marked) {
    state_ = State::inside;
  }
  return false;
}

bool MarkdownSigns::Struck::ends(bool isTilde) {
  if (isTilde) {
    tildes_ = tildes_ == 0 ? 1 : 2;
    return isInside_ && tildes_ == 2;
  }
  if (tildes_ > 0) {
    isInside_ = tildes_ == 2;
    tildes_ = 0;
  }
  return false;
}

bool MarkdownSigns::endsLink(std::int32_t c) {
  if (text::isNewline(c)) {
    link_ = Link::outside;
    return false;
  }
  switch (link_) {
    case Link::outside:
      link_ = c == '[' ? Link::bracket : Link::outside;
      break;
    case Link::bracket:
      link_ = Link::label;
      break;
    case Link::labelEnd:
      if (c == '(') {
        link_ = Link::parenthesis;
        break;
      }
      [[fallthrough]];
    case Link::label:
      link_ = c == ']' ? Link::labelEnd : Link::label;
      break;
    case Link::parenthesis:
      link_ = Link::target;
      break;
    case Link::target:
      return c == ')';
  }
  return false;
}

bool MarkdownSigns::endsTableRow(std::int32_t c) {
  if (text::isNewline(c)) {
    tableRow_ = TableRow::outside;
  } else if (tableRow_ == TableRow::outside) {
    tableRow_ = c == '|' ? TableRow::bar : TableRow::outside;
  } else {
    return std::exchange(tableRow_, TableRow::cell) == TableRow::cell && c == '|';
  }
  return false;
}

bool MarkdownSigns::endsStart(std::int32_t c) {
  const auto goesOn = [this](bool does, Start next) { start_ = does ? next : Start::elsewhere; };
  switch (start_) {
    case Start::first:
      if (c == '#') {
        start_ = Start::hashes;
        count_ = 1;
        break;
      }
      [[fallthrough]];
    case Start::blanks:
      if (c == '-') {
        start_ = Start::dashes;
        count_ = 1;
      } else if (c == '*' || c == '+' || c == '>') {
        start_ = Start::marker;
      } else if (text::isDigit(c)) {
        start_ = Start::digits;
      } else {
        goesOn(text::isWhitespace(c), Start::blanks);
      }
      break;
    case Start::hashes:
      if (c == '#') {
        goesOn(++count_ <= 6, Start::hashes);
        break;
      }
      [[fallthrough]];
    case Start::marker:
      goesOn(text::isWhitespace(c), Start::content);
      break;
    case Start::digits:
      if (!text::isDigit(c)) {
        goesOn(c == '.', Start::marker);
      }
      break;
    case Start::dashes:
      if (c == '-') {
        count_ = count_ == 1 ? 2 : 3;
      } else {
        goesOn(text::isWhitespace(c) && count_ != 2, count_ == 1 ? Start::content : Start::ruleEnd);
      }
      break;
    case Start::ruleEnd:
      goesOn(text::isWhitespace(c), Start::ruleEnd);
      break;
    case Start::content:
      return !text::isNewline(c);
    case Start::elsewhere:
      break;
  }
  return false;
}

}  // namespace quillmark
