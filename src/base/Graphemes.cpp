#include "base/Graphemes.h"

#include <memory>

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include "base/Text.h"

namespace quillmark::text {
namespace {

/// This many plain characters in a row end a run of others.
constexpr std::size_t runEnd = 200;

constexpr char32_t carriageReturnLineFeed = 0x110000;
constexpr char32_t firstOwnCode = carriageReturnLineFeed + 1;

/// Code points that are characters of their own next to each other, except for CR LF, and that composition leaves
/// unchanged. Most texts consist mostly of these; a code point missing here only costs time.
bool isPlain(UChar32 c) {
  constexpr std::pair<UChar32, UChar32> ranges[] = {
      {0x391, 0x3CE},   {0x400, 0x481},   {0x48A, 0x52F},   {0x5D0, 0x5EA},   {0x621, 0x64A},
      {0x2010, 0x2027}, {0x2030, 0x203B}, {0x3001, 0x3029}, {0x3041, 0x3096}, {0x30A1, 0x30FE},
      {0x4E00, 0x9FFF}, {0xAC00, 0xD7A3}, {0xFF01, 0xFF9D},
  };
  if (c < 0x300) {
    return c >= 0;
  }
  if (c > 0x64A && c < 0x2010) {
    return false;
  }
  for (const auto& [first, last] : ranges) {
    if (c <= last) {
      return c >= first;
    }
  }
  return false;
}

/// Whether the word has the same characters between blanks as on its own: none joins what precedes or follows it.
bool standsAlone(std::string_view word) {
  std::size_t position = 0;
  const auto breaking = [](UChar32 c) { return u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK); };
  switch (breaking(nextCharacter(word, position))) {
    case U_GCB_EXTEND:
    case U_GCB_SPACING_MARK:
    case U_GCB_ZWJ:
      return false;
    default:
      break;
  }
  position = word.size();
  while (position > 0 && (static_cast<unsigned char>(word[position - 1]) & 0xC0U) == 0x80U) {
    --position;
  }
  position -= position > 0 ? 1 : 0;
  return breaking(nextCharacter(word, position)) != U_GCB_PREPEND;
}

}  // namespace

Graphemes GraphemeTable::encode(std::string_view text) {
  Graphemes result;
  result.codes.reserve(text.size());
  result.starts.reserve(text.size() + 1);
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    const UChar32 c = nextCharacter(text, position);
    if (c == '\n' && !result.codes.empty() && result.codes.back() == U'\r') {
      result.codes.back() = carriageReturnLineFeed;
      continue;
    }
    if (isPlain(c)) {
      result.codes.push_back(static_cast<char32_t>(c));
      result.starts.push_back(static_cast<std::uint32_t>(start));
      continue;
    }
    // The run of others includes the adjacent plain ones: they may be part of its characters.
    std::size_t runStart = start;
    if (!result.codes.empty()) {
      runStart = result.starts.back();
      result.codes.pop_back();
      result.starts.pop_back();
    }
    // Short runs are merged: a run costs as much as many characters.
    for (std::size_t plain = 0; plain < runEnd && position < text.size();) {
      plain = isPlain(nextCharacter(text, position)) ? plain + 1 : 0;
    }
    encodeRun(text.substr(runStart, position - runStart), static_cast<std::uint32_t>(runStart), result);
  }
  result.starts.push_back(static_cast<std::uint32_t>(text.size()));
  return result;
}

void GraphemeTable::encodeRun(std::string_view text, std::uint32_t offset, Graphemes& result) {
  const auto words = split(text, ' ');
  std::vector<Place*> places;
  std::vector<std::pair<std::string_view, Place*>> unknown;
  places.reserve(words.size());
  for (const auto word : words) {
    auto known = words_.find(word);
    if (known == words_.end()) {
      if (!word.empty() && !standsAlone(word)) {
        for (const auto& [other, place] : unknown) {
          words_.erase(words_.find(other));
        }
        findClusters(text, offset, result);
        return;
      }
      known = words_.emplace(word, Place()).first;
      unknown.emplace_back(word, &known->second);
    }
    places.push_back(&known->second);  // stays where it is when the table grows
  }
  learn(unknown);
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) {
      result.codes.push_back(U' ');
      result.starts.push_back(offset++);
    }
    const auto [first, count] = *places[i];
    result.codes.append(known_.codes, first, count);
    for (std::size_t at = first; at < first + count; ++at) {
      result.starts.push_back(offset + known_.starts[at]);
    }
    offset += static_cast<std::uint32_t>(words[i].size());
  }
}

void GraphemeTable::learn(const std::vector<std::pair<std::string_view, Place*>>& words) {
  // All of them in one call: finding the characters of one word costs as much as of many.
  std::string all;
  for (const auto& [word, place] : words) {
    all.append(word).push_back(' ');
  }
  Graphemes found;
  findClusters(all, 0, found);
  std::uint32_t wordStart = 0;
  std::size_t at = 0;
  for (const auto& [word, place] : words) {
    const auto wordEnd = wordStart + static_cast<std::uint32_t>(word.size());
    place->first = known_.codes.size();
    for (; at < found.codes.size() && found.starts[at] < wordEnd; ++at) {
      known_.codes.push_back(found.codes[at]);
      known_.starts.push_back(found.starts[at] - wordStart);
    }
    place->count = known_.codes.size() - place->first;
    ++at;  // the blank
    wordStart = wordEnd + 1;
  }
}

void GraphemeTable::findClusters(std::string_view text, std::uint32_t offset, Graphemes& result) {
  UErrorCode status = U_ZERO_ERROR;
  thread_local const std::unique_ptr<icu::BreakIterator> clusters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  const auto* composition = icu::Normalizer2::getNFCInstance(status);
  const auto unicode =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  if (!clusters || U_FAILURE(status)) {
    return;
  }
  clusters->setText(unicode);
  const bool isComposed = composition->isNormalized(unicode, status) != 0;
  const std::u16string_view units(unicode.getBuffer(), static_cast<std::size_t>(unicode.length()));
  std::size_t bytes = 0;
  std::int32_t start = 0;
  for (auto end = clusters->next(); end != icu::BreakIterator::DONE; start = end, end = clusters->next()) {
    const auto cluster = units.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
    if (isComposed) {
      result.codes.push_back(codeOf(cluster));
    } else {
      const auto composed = composition->normalize(unicode.tempSubStringBetween(start, end), status);
      result.codes.push_back(codeOf({composed.getBuffer(), static_cast<std::size_t>(composed.length())}));
    }
    result.starts.push_back(offset + static_cast<std::uint32_t>(bytes));
    for (std::size_t unit = 0; unit < cluster.size(); ++unit) {
      if (!U16_IS_TRAIL(cluster[unit]) || unit == 0 || !U16_IS_LEAD(cluster[unit - 1])) {
        nextCharacter(text, bytes);
      }
    }
  }
}

char32_t GraphemeTable::codeOf(std::u16string_view cluster) {
  if (cluster.size() == 1) {
    return cluster.front();
  }
  if (cluster.size() == 2 && U16_IS_LEAD(cluster[0])) {
    return static_cast<char32_t>(U16_GET_SUPPLEMENTARY(cluster[0], cluster[1]));
  }
  if (cluster == u"\r\n") {
    return carriageReturnLineFeed;
  }
  auto known = clusters_.find(cluster);
  if (known == clusters_.end()) {
    known = clusters_.emplace(cluster, firstOwnCode + static_cast<char32_t>(clusters_.size())).first;
  }
  return known->second;
}

}  // namespace quillmark::text
