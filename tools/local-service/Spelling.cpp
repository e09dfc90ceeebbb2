#include "local-service/Spelling.h"

#include <fstream>
#include <hunspell/hunspell.hxx>
#include <stdexcept>

#include "base/Text.h"
#include "local-service/Casing.h"
#include "local-service/TextScanner.h"

namespace quillmark::service {
namespace {

constexpr std::size_t rememberedReplacements = 20'000;

struct Slip {
  std::string_view wrong;
  std::string_view right;
};

/// Misspellings for which the dictionary's first proposal is not what people mean, or which are themselves words.
constexpr Slip commonSlips[] = {
    {"alot", "a lot"},       {"arent", "aren't"},         {"brwn", "brown"},
    {"couldnt", "couldn't"}, {"didnt", "didn't"},         {"doesnt", "doesn't"},
    {"dont", "don't"},       {"grammer", "grammar"},      {"hasnt", "hasn't"},
    {"havent", "haven't"},   {"isnt", "isn't"},           {"im", "I'm"},
    {"ive", "I've"},         {"quik", "quick"},           {"shouldnt", "shouldn't"},
    {"teh", "the"},          {"thats", "that's"},         {"theyre", "they're"},
    {"wasnt", "wasn't"},     {"werent", "weren't"},       {"whats", "what's"},
    {"whith", "with"},       {"wich", "which"},           {"wouldnt", "wouldn't"},
    {"youre", "you're"},     {"infact", "in fact"},       {"aswell", "as well"},
    {"noone", "no one"},     {"eachother", "each other"},
};

std::string_view commonSlipFor(std::string_view lowerWord) {
  for (const auto& slip : commonSlips) {
    if (lowerWord == slip.wrong) {
      return slip.right;
    }
  }
  return {};
}

/// Whether two words differ only in letters doubled in one and single in the other, as in "adress".
bool differInDoubling(std::string_view a, std::string_view b) {
  const auto singled = [](std::string_view word) {
    std::string result;
    for (const char c : word) {
      if (result.empty() || result.back() != c) {
        result += c;
      }
    }
    return result;
  };
  return a != b && singled(a) == singled(b);
}

/// Edits between two words: insertions, deletions, replacements and swapped neighbours.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        cost[i][j] = i + j;
        continue;
      }
      cost[i][j] =
          std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
      }
    }
  }
  return cost[a.size()][b.size()];
}

bool isPlainEnglish(std::string_view word) {
  return std::all_of(word.begin(), word.end(),
                     [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '\''; });
}

bool endsSentence(std::string_view between) { return between.find_first_of(".!?\n") != std::string_view::npos; }

bool isOnlyBlanks(std::string_view text) { return text.find_first_not_of(" \t") == std::string_view::npos; }

/// Words that nearly every English sentence contains.
bool isSmallEnglishWord(std::string_view word) {
  constexpr std::string_view list[] = {"a",    "and",  "are", "at", "be",   "for", "have", "i",   "is",
                                       "it",   "my",   "not", "of", "on",   "our", "that", "the", "their",
                                       "they", "this", "to",  "we", "with", "you", "your"};
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

/// Words that may correctly occur twice in a row.
bool mayStandTwice(std::string_view word) { return word == "had" || word == "that" || word == "bye" || word == "no"; }

}  // namespace

Spelling::Spelling(const std::string& dictionary) {
  const auto rules = dictionary + ".aff";
  const auto words = dictionary + ".dic";
  if (!std::ifstream(rules) || !std::ifstream(words)) {
    throw std::runtime_error("no dictionary at " + dictionary + ".dic (Debian package hunspell-en-us)");
  }
  hunspell_ = std::make_unique<Hunspell>(rules.c_str(), words.c_str());
}

Spelling::~Spelling() = default;

std::string Spelling::corrected(std::string_view text) {
  const std::lock_guard lock(mutex_);
  const auto pieces = scanPieces(text);

  std::size_t words = 0;
  std::size_t unknown = 0;
  std::size_t smallWords = 0;
  for (const auto& piece : pieces) {
    if (piece.isWord) {
      const auto lower = text::lowerCased(piece.text);
      ++words;
      unknown += isKnown(std::string(piece.text)) || !commonSlipFor(lower).empty() ? 0 : 1;
      smallWords += isSmallEnglishWord(lower) ? 1 : 0;
    }
  }
  if (words >= 5 && unknown * 2 > words && smallWords * 6 < words) {
    return std::string(text);
  }

  std::string result;
  result.reserve(text.size());
  std::string previousWord;
  bool sentenceStarts = true;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const auto& piece = pieces[i];
    if (!piece.isWord) {
      result += piece.text;
      if (!isOnlyBlanks(piece.text)) {
        previousWord.clear();
        sentenceStarts = endsSentence(piece.text) || (sentenceStarts && piece.text.find('`') == std::string_view::npos);
      }
      continue;
    }
    const std::string word(piece.text);
    const auto casing = casingOf(word);
    const bool isName = casing == Casing::capitalised && !sentenceStarts;
    const bool mayBeAcronym = casing == Casing::upper && words > 1 && casingOf(previousWord) != Casing::upper &&
                              (i + 2 >= pieces.size() || casingOf(pieces[i + 2].text) != Casing::upper);
    const std::string right = isName || mayBeAcronym ? word : replacementFor(word);
    if (right == previousWord && casing != Casing::upper && word.size() > 1 && !mayStandTwice(right)) {
      // "the the": drop the blank that was written between the two as well.
      result.erase(result.size() - pieces[i - 1].text.size());
      continue;
    }
    result += right;
    previousWord = right;
    sentenceStarts = false;
  }
  return result;
}

bool Spelling::isKnown(const std::string& word) { return !isPlainEnglish(word) || hunspell_->spell(word); }

const std::string& Spelling::replacementFor(const std::string& word) {
  if (const auto known = replacements_.find(word); known != replacements_.end()) {
    return known->second;
  }
  if (replacements_.size() >= rememberedReplacements) {
    replacements_.clear();
  }
  return replacements_.emplace(word, findReplacement(word)).first->second;
}

std::string Spelling::findReplacement(const std::string& word) {
  const auto lower = text::lowerCased(word);
  if (const auto right = commonSlipFor(lower); !right.empty()) {
    return inCasing(std::string(right), casingOf(word));
  }
  if (lower == "i") {
    return "I";
  }
  if (word.size() < 2 || word.size() > 40 || isKnown(word) || isKnown(lower)) {
    return word;
  }
  // More edits than this would make it a different word; the writer's own is the better guess.
  const std::size_t allowed = lower.size() < 5 ? 1 : 2;
  std::string first;
  for (const auto& proposal : hunspell_->suggest(lower)) {
    const auto lowerProposal = text::lowerCased(proposal);
    if (lowerProposal == lower) {
      return casingOf(word) == Casing::upper ? word : proposal;
    }
    if (!isPlainEnglish(proposal) || proposal != lowerProposal || editDistance(lower, proposal) > allowed) {
      continue;
    }
    if (differInDoubling(lower, proposal)) {
      return inCasing(proposal, casingOf(word));
    }
    if (first.empty()) {
      first = proposal;
    }
  }
  return first.empty() ? word : inCasing(first, casingOf(word));
}

}  // namespace quillmark::service
