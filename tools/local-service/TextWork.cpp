#include "local-service/TextWork.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "base/Text.h"
#include "local-service/Casing.h"
#include "local-service/TextScanner.h"

namespace quillmark::service {
namespace {

constexpr std::size_t tweetLength = 280;
constexpr std::size_t summarySentences = 3;

struct Opening {
  std::string_view words;
  Task task;
};

constexpr Opening openings[] = {
    {"Act like you are an expert grammar checker.", Task::fixGrammar},
    {"Act like you are an expert writing assistant.", Task::improveWriting},
    {"Act like you are an expert copywriter. Please simplify", Task::simplifyLanguage},
    {"Act like you are an expert Copywriter. Please make the following text shorter", Task::makeShorter},
    {"Act like you are a text summarizer.", Task::summarize},
    {"Act Like You Are an Expert Copywriter. Can You Please Title Case", Task::titleCase},
    {"Act like you are an funny Emoji expert.", Task::asEmojis},
    {"You are a Yoda from StarWars.", Task::translateToYoda},
    {"I want you to act as an email writer.", Task::asEmail},
    {"I want you to act as an tweet writer.", Task::asTweet},
    {"You are a human writer.", Task::humanizeText},
    {"You are a professional translator. Translate command titles", Task::translateTitle},
    {"Just return True if API key is valid", Task::checkKey},
};

struct Rewording {
  std::string_view from;  ///< lower-case words, one blank between them
  std::string_view to;    ///< empty: dropped, with the blank after it
};

constexpr Rewording fillers[] = {
    {"at this point in time", "now"},
    {"due to the fact that", "because"},
    {"for the purpose of", "for"},
    {"in order to", "to"},
    {"in spite of the fact that", "although"},
    {"in the event that", "if"},
    {"with regard to", "about"},
    {"as a matter of fact", ""},
    {"needless to say", ""},
    {"actually", ""},
    {"basically", ""},
    {"certainly", ""},
    {"definitely", ""},
    {"essentially", ""},
    {"extremely", ""},
    {"honestly", ""},
    {"just", ""},
    {"literally", ""},
    {"obviously", ""},
    {"quite", ""},
    {"really", ""},
    {"simply", ""},
    {"very", ""},
};

constexpr Rewording plainWords[] = {
    {"a large number of", "many"},
    {"a majority of", "most"},
    {"at the present time", "now"},
    {"due to the fact that", "because"},
    {"has the ability to", "can"},
    {"in order to", "to"},
    {"in the event that", "if"},
    {"is able to", "can"},
    {"prior to", "before"},
    {"subsequent to", "after"},
    {"with regard to", "about"},
    {"accordingly", "so"},
    {"additional", "more"},
    {"approximately", "about"},
    {"assist", "help"},
    {"assistance", "help"},
    {"attempt", "try"},
    {"attempted", "tried"},
    {"commence", "begin"},
    {"commenced", "began"},
    {"consequently", "so"},
    {"demonstrate", "show"},
    {"demonstrates", "shows"},
    {"discontinue", "stop"},
    {"endeavour", "try"},
    {"facilitate", "help"},
    {"facilitates", "helps"},
    {"furthermore", "also"},
    {"however", "but"},
    {"implement", "carry out"},
    {"initiate", "start"},
    {"initiated", "started"},
    {"leverage", "use"},
    {"methodology", "method"},
    {"nevertheless", "still"},
    {"numerous", "many"},
    {"obtain", "get"},
    {"obtained", "got"},
    {"participate", "take part"},
    {"purchase", "buy"},
    {"purchased", "bought"},
    {"regarding", "about"},
    {"require", "need"},
    {"required", "needed"},
    {"requires", "needs"},
    {"sufficient", "enough"},
    {"terminate", "end"},
    {"terminated", "ended"},
    {"therefore", "so"},
    {"utilise", "use"},
    {"utilize", "use"},
    {"utilized", "used"},
    {"utilizes", "uses"},
    {"utilizing", "using"},
};

constexpr Rewording contractions[] = {
    {"are not", "aren't"},       {"can not", "can't"},      {"cannot", "can't"},       {"could not", "couldn't"},
    {"did not", "didn't"},       {"do not", "don't"},       {"does not", "doesn't"},   {"had not", "hadn't"},
    {"has not", "hasn't"},       {"have not", "haven't"},   {"i am", "I'm"},           {"i have", "I've"},
    {"i will", "I'll"},          {"is not", "isn't"},       {"it is", "it's"},         {"let us", "let's"},
    {"should not", "shouldn't"}, {"that is", "that's"},     {"they are", "they're"},   {"was not", "wasn't"},
    {"we are", "we're"},         {"we have", "we've"},      {"we will", "we'll"},      {"were not", "weren't"},
    {"will not", "won't"},       {"would not", "wouldn't"}, {"you are", "you're"},     {"you will", "you'll"},
    {"utilize", "use"},          {"leverage", "use"},       {"delve into", "look at"}, {"in order to", "to"},
    {"due to", "from"},          {"crucial", "important"},  {"vital", "important"},
};

/// Dropped at the start of a sentence, with the comma after it.
constexpr std::string_view stiffOpenings[] = {
    "additionally",  "as a result", "consequently", "firstly",      "furthermore", "however", "importantly",
    "in conclusion", "in summary",  "indeed",       "moreover",     "nonetheless", "notably", "similarly",
    "subsequently",  "therefore",   "thus",         "to summarize", "ultimately",
};

constexpr Rewording emojis[] = {
    {"apple", "🍎"},
    {"baby", "👶"},
    {"beer", "🍺"},
    {"bike", "🚲"},
    {"bird", "🐦"},
    {"birthday", "🎂"},
    {"book", "📖"},
    {"bug", "🐛"},
    {"bus", "🚌"},
    {"cake", "🍰"},
    {"car", "🚗"},
    {"cat", "🐱"},
    {"coffee", "☕"},
    {"computer", "💻"},
    {"cool", "😎"},
    {"day", "☀️"},
    {"dog", "🐶"},
    {"email", "📧"},
    {"fire", "🔥"},
    {"fish", "🐟"},
    {"flower", "🌸"},
    {"fox", "🦊"},
    {"friend", "🧑‍🤝‍🧑"},
    {"gift", "🎁"},
    {"good", "👍"},
    {"happy", "😀"},
    {"heart", "❤️"},
    {"hello", "👋"},
    {"hi", "👋"},
    {"home", "🏠"},
    {"horse", "🐴"},
    {"house", "🏠"},
    {"idea", "💡"},
    {"key", "🔑"},
    {"laugh", "😂"},
    {"love", "❤️"},
    {"mail", "📧"},
    {"money", "💰"},
    {"moon", "🌙"},
    {"mouse", "🐭"},
    {"music", "🎵"},
    {"night", "🌙"},
    {"no", "❌"},
    {"party", "🎉"},
    {"phone", "📱"},
    {"pizza", "🍕"},
    {"plane", "✈️"},
    {"rain", "🌧️"},
    {"rocket", "🚀"},
    {"sad", "😢"},
    {"school", "🏫"},
    {"ship", "🚢"},
    {"sleep", "😴"},
    {"snow", "❄️"},
    {"star", "⭐"},
    {"sun", "☀️"},
    {"tea", "🍵"},
    {"thanks", "🙏"},
    {"time", "⏰"},
    {"train", "🚆"},
    {"tree", "🌳"},
    {"walk", "🚶"},
    {"water", "💧"},
    {"work", "💼"},
    {"world", "🌍"},
    {"yes", "✅"},
};

constexpr std::string_view smallTitleWords[] = {
    "a",  "an",  "and", "as",   "at", "but",  "by",  "for", "from", "in", "into", "nor",
    "of", "off", "on",  "onto", "or", "over", "per", "the", "to",   "up", "via",  "with",
};

constexpr std::string_view verbsToTurnAround[] = {
    "am", "are", "can", "could", "has", "have", "is", "may", "must", "shall", "should", "was", "were", "will", "would",
};

constexpr std::string_view wordsWithoutWeight[] = {
    "a",   "about", "after", "all",  "also",  "an",   "and",   "are",  "as",    "at",   "be",   "been", "but",
    "by",  "can",   "could", "for",  "from",  "had",  "has",   "have", "he",    "her",  "his",  "i",    "if",
    "in",  "into",  "is",    "it",   "its",   "more", "no",    "not",  "of",    "on",   "one",  "or",   "our",
    "she", "so",    "some",  "than", "that",  "the",  "their", "them", "there", "they", "this", "to",   "was",
    "we",  "were",  "what",  "when", "which", "who",  "will",  "with", "would", "you",  "your",
};

template <std::size_t N>
bool contains(const std::string_view (&list)[N], std::string_view word) {
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

std::string_view trimmedBlanks(std::string_view text) { return text::trimmed(text); }

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t") == std::string_view::npos; }

/// The number of pieces from `at` on that are the words of `phrase` with single runs of blanks between them, if they
/// are.
std::size_t phraseAt(const std::vector<Piece>& pieces, std::size_t at, std::string_view phrase) {
  std::size_t used = 0;
  for (const auto word : text::split(phrase, ' ')) {
    if (used > 0) {
      if (at + used >= pieces.size() || !isBlank(pieces[at + used].text)) {
        return 0;
      }
      ++used;
    }
    if (at + used >= pieces.size() || !pieces[at + used].isWord || text::lowerCased(pieces[at + used].text) != word) {
      return 0;
    }
    ++used;
  }
  return used;
}

struct Match {
  const Rewording* rewording = nullptr;
  std::size_t pieces = 0;
};

/// The longest phrase of the table that matches at `at`.
template <std::size_t N>
Match longestMatch(const std::vector<Piece>& pieces, std::size_t at, const Rewording (&table)[N]) {
  Match best;
  for (const auto& rewording : table) {
    // Most words differ from most phrases in the first letter: compare it before copying anything.
    const char first = pieces[at].text.front();
    if (first != rewording.from.front() && first != rewording.from.front() - 'a' + 'A') {
      continue;
    }
    if (const auto length = phraseAt(pieces, at, rewording.from); length > best.pieces) {
      best = {&rewording, length};
    }
  }
  return best;
}

/// Whether a word between the text `before` and the punctuation `after` is its whole sentence.
bool isWholeSentence(std::string_view before, std::string_view after) {
  const auto start = before.find_last_not_of(" \t");
  return (start == std::string_view::npos ||
          std::string_view(".!?\r\n").find(before[start]) != std::string_view::npos) &&
         std::string_view(".!?\r\n").find(after.front()) != std::string_view::npos;
}

std::string inCasingOf(std::string_view original, std::string_view replacement) {
  const auto casing = casingOf(original);
  // "I AM" is not shouted by its first word.
  const bool single = original.size() == 1;
  return inCasing(std::string(replacement), casing == Casing::upper && single ? Casing::capitalised : casing);
}

/// The text with the phrases of a table replaced. A dropped word takes the blank after it along and passes on its
/// capital letter.
template <std::size_t N>
std::string reworded(std::string_view text, const Rewording (&table)[N]) {
  const auto pieces = scanPieces(text);
  std::string result;
  result.reserve(text.size());
  bool capitalNext = false;
  for (std::size_t i = 0; i < pieces.size();) {
    const auto& piece = pieces[i];
    const auto match = piece.isWord ? longestMatch(pieces, i, table) : Match{};
    if (match.rewording == nullptr) {
      result += piece.isWord && capitalNext ? capitalised(std::string(piece.text)) : std::string(piece.text);
      capitalNext = capitalNext && !piece.isWord;
      ++i;
      continue;
    }
    i += match.pieces;
    if (match.rewording->to.empty() && isWholeSentence(result, i < pieces.size() ? pieces[i].text : ".")) {
      for (std::size_t kept = i - match.pieces; kept < i; ++kept) {
        result += pieces[kept].text;
      }
      continue;
    }
    if (!match.rewording->to.empty()) {
      const auto replacement = inCasingOf(piece.text, match.rewording->to);
      result += capitalNext ? capitalised(replacement) : replacement;
      capitalNext = false;
      continue;
    }
    capitalNext = capitalNext || casingOf(piece.text) == Casing::capitalised;
    if (i >= pieces.size()) {
      continue;
    }
    if (isBlank(pieces[i].text)) {
      ++i;
    } else if (pieces[i].text.starts_with(", ") || pieces[i].text == ",") {
      // "Basically, it works": the comma goes with the word.
      ++i;
      if (i < pieces.size() && isBlank(pieces[i].text)) {
        ++i;
      }
    } else if (!result.empty() && result.back() == ' ') {
      result.pop_back();
    }
  }
  return result;
}

/// Calls `work` with each line and joins the results with the original line ends.
template <class Work>
std::string lineByLine(std::string_view text, Work work) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto end = text.find_first_of("\r\n");
    result += work(text.substr(0, end));
    if (end == std::string_view::npos) {
      break;
    }
    result += text[end];
    text.remove_prefix(end + 1);
  }
  return result;
}

/// What follows `label` on its line, or nothing.
std::string_view lineBehind(std::string_view text, std::string_view label) {
  const auto found = text.find(label);
  if (found == std::string_view::npos) {
    return {};
  }
  const auto rest = text.substr(found + label.size());
  return trimmedBlanks(rest.substr(0, rest.find('\n')));
}

std::string withoutAsides(std::string_view line) {
  std::string result;
  while (!line.empty()) {
    const auto open = line.find('(');
    const auto close = open == std::string_view::npos ? open : line.find(')', open);
    const bool isAside =
        close != std::string_view::npos && (open == 0 || line[open - 1] == ' ') && line.find('(', open + 1) >= close;
    if (close == std::string_view::npos) {
      return result.append(line);
    }
    if (isAside) {
      result.append(line.substr(0, open));
      if (!result.empty() && result.back() == ' ') {
        result.pop_back();
      }
    } else {
      result.append(line.substr(0, close + 1));
    }
    line.remove_prefix(close + 1);
  }
  return result;
}

std::string yodaSentence(std::string_view sentence) {
  const auto pieces = scanPieces(sentence);
  std::size_t firstWord = pieces.size();
  std::size_t verb = pieces.size();
  std::size_t lastWord = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (!pieces[i].isWord) {
      continue;
    }
    if (firstWord == pieces.size()) {
      firstWord = i;
    } else if (verb == pieces.size() && contains(verbsToTurnAround, text::lowerCased(pieces[i].text))) {
      verb = i;
    }
    lastWord = i;
  }
  if (verb == pieces.size() || lastWord <= verb) {
    return std::string(sentence);
  }
  const auto between = [&](std::size_t from, std::size_t to) {
    std::string result;
    for (std::size_t i = from; i < to; ++i) {
      result += pieces[i].text;
    }
    return result;
  };
  const std::string front = between(0, firstWord);
  std::string subject = between(firstWord, verb + 1);
  const std::string rest = between(verb + 1, lastWord + 1);
  const std::string end = between(lastWord + 1, pieces.size());
  constexpr std::string_view lowered[] = {"a",    "an",   "he",    "her", "his",   "it",    "my",
                                          "our",  "she",  "that",  "the", "their", "there", "these",
                                          "they", "this", "those", "we",  "you",   "your"};
  if (contains(lowered, text::lowerCased(pieces[firstWord].text))) {
    subject.replace(0, pieces[firstWord].text.size(), text::lowerCased(pieces[firstWord].text));
  }
  return front + capitalised(std::string(trimmedBlanks(rest))) + ", " + subject + end;
}

std::string withoutStiffOpening(std::string_view sentence) {
  const auto lower = text::lowerCased(sentence.substr(0, 24));
  for (const auto opening : stiffOpenings) {
    if (lower.starts_with(opening) && lower.substr(opening.size()).starts_with(", ")) {
      return capitalised(std::string(sentence.substr(opening.size() + 2)));
    }
  }
  return std::string(sentence);
}

}  // namespace

Task taskOf(std::string_view systemPrompt) {
  const auto prompt = trimmedBlanks(systemPrompt);
  for (const auto& opening : openings) {
    if (prompt.starts_with(opening.words)) {
      return opening.task;
    }
  }
  return Task::unknown;
}

std::string TextWork::answer(std::string_view systemPrompt, std::string_view text) {
  switch (taskOf(systemPrompt)) {
    case Task::fixGrammar:
      return spelling_.corrected(text);
    case Task::improveWriting:
      return withSentenceCapitals(reworded(spelling_.corrected(text), fillers));
    case Task::simplifyLanguage:
      return simplified(text);
    case Task::makeShorter:
      return shortened(text);
    case Task::summarize:
      return summarized(text);
    case Task::titleCase:
      return titleCased(text);
    case Task::asEmojis:
      return withEmojis(text);
    case Task::translateToYoda:
      return inYodaOrder(text);
    case Task::asEmail:
      return asEmail(text, lineBehind(systemPrompt, "- My name is "), lineBehind(systemPrompt, "- I am the "));
    case Task::asTweet:
      return asTweet(text);
    case Task::humanizeText:
      return humanized(text);
    case Task::translateTitle: {
      // A note has no place in a command's name, so the title stays in its own language.
      constexpr std::string_view label = "\nTitle: ";
      const auto title = text.rfind(label);
      return std::string(title == std::string_view::npos ? text : text.substr(title + label.size()));
    }
    case Task::checkKey:
      return "True";
    case Task::unknown:
      return withNote(text);
  }
  return withNote(text);
}

std::string withNote(std::string_view text) {
  return std::string(text) +
         "\n[The text is unchanged: Quillmark's local service has no language model and could not do this. Start it "
         "with --upstream URL to attach one.]";
}

std::string titleCased(std::string_view text) {
  return lineByLine(text, [](std::string_view line) {
    const auto pieces = scanPieces(line);
    std::size_t lastWord = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      lastWord = pieces[i].isWord ? i : lastWord;
    }
    std::string result;
    bool first = true;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      const std::string word(pieces[i].text);
      const auto casing = casingOf(word);
      if (!pieces[i].isWord) {
        result += word;
        first = first || word.find_first_of(":.?!") != std::string::npos;
        continue;
      }
      const bool small = !first && i != lastWord && contains(smallTitleWords, text::lowerCased(word));
      if (small && casing == Casing::capitalised) {
        result += text::lowerCased(word);
      } else {
        result += small || casing != Casing::lower ? word : capitalised(word);
      }
      first = false;
    }
    return result;
  });
}

std::string shortened(std::string_view text) { return reworded(lineByLine(text, withoutAsides), fillers); }

std::string simplified(std::string_view text) { return reworded(text, plainWords); }

std::string humanized(std::string_view text) {
  std::string result;
  for (const auto sentence : scanSentences(text)) {
    result += withoutStiffOpening(sentence);
  }
  return reworded(result, contractions);
}

std::string withSentenceCapitals(std::string_view text) {
  std::string result;
  for (const auto sentence : scanSentences(text)) {
    const auto pieces = scanPieces(sentence);
    bool first = true;
    for (const auto& piece : pieces) {
      const bool capital = first && piece.isWord && casingOf(piece.text) == Casing::lower;
      result += capital ? capitalised(std::string(piece.text)) : std::string(piece.text);
      first = first && !piece.isWord && piece.text.find_first_not_of(" \t\r\n\"'(*_-") == std::string_view::npos;
    }
  }
  return result;
}

std::string inYodaOrder(std::string_view text) {
  std::string result;
  for (const auto sentence : scanSentences(text)) {
    result += yodaSentence(sentence);
  }
  return result;
}

std::string withEmojis(std::string_view text) {
  std::string result;
  for (const auto& piece : scanPieces(text)) {
    const auto word = piece.isWord ? text::lowerCased(piece.text) : std::string();
    const auto found = std::find_if(std::begin(emojis), std::end(emojis), [&](const Rewording& emoji) {
      return word == emoji.from ||
             (word.size() == emoji.from.size() + 1 && word.back() == 's' && word.starts_with(emoji.from));
    });
    result += found == std::end(emojis) ? piece.text : found->to;
  }
  return result;
}

std::string asTweet(std::string_view text) {
  const auto whole = trimmedBlanks(text);
  if (text::graphemeCount(whole) <= tweetLength) {
    return std::string(whole);
  }
  std::string_view fitting;
  for (const auto sentence : scanSentences(whole)) {
    const auto longer = whole.substr(0, static_cast<std::size_t>(sentence.data() - whole.data()) + sentence.size());
    if (text::graphemeCount(trimmedBlanks(longer)) > tweetLength) {
      break;
    }
    fitting = trimmedBlanks(longer);
  }
  if (!fitting.empty()) {
    return std::string(fitting);
  }
  std::string_view words;
  for (auto end = whole.find_first_of(" \t\r\n"); end != std::string_view::npos;
       end = whole.find_first_of(" \t\r\n", end + 1)) {
    const auto longer = trimmedBlanks(whole.substr(0, end));
    if (text::graphemeCount(longer) >= tweetLength) {
      break;
    }
    words = longer;
  }
  return std::string(words) + "…";
}

std::string asEmail(std::string_view text, std::string_view name, std::string_view role) {
  std::string email = "Hello,\n\n";
  email += trimmedBlanks(text);
  email += "\n\nBest regards";
  for (const auto line : {name, role}) {
    if (!line.empty()) {
      email += (email.ends_with("regards") ? ",\n" : "\n") + std::string(line);
    }
  }
  return email;
}

std::string summarized(std::string_view text) {
  const auto sentences = scanSentences(text);
  if (sentences.size() <= summarySentences) {
    return std::string(text);
  }
  std::map<std::string, double> weights;
  std::vector<std::vector<std::string>> words(sentences.size());
  for (std::size_t i = 0; i < sentences.size(); ++i) {
    for (const auto& piece : scanPieces(sentences[i])) {
      auto word = piece.isWord ? text::lowerCased(piece.text) : std::string();
      if (!word.empty() && !contains(wordsWithoutWeight, word)) {
        weights[word] += 1;
        words[i].push_back(std::move(word));
      }
    }
  }
  std::vector<std::pair<double, std::size_t>> ranked;
  for (std::size_t i = 1; i < sentences.size(); ++i) {
    double weight = 0;
    for (const auto& word : words[i]) {
      weight += weights[word];
    }
    ranked.emplace_back(words[i].empty() ? 0 : -weight / static_cast<double>(words[i].size()), i);
  }
  std::sort(ranked.begin(), ranked.end());
  // The opening sentence says what the text is about.
  std::set<std::size_t> chosen{0};
  for (std::size_t i = 0; i + 1 < summarySentences; ++i) {
    chosen.insert(ranked[i].second);
  }
  std::string result;
  for (const auto i : chosen) {
    result += (result.empty() ? "" : " ") + std::string(trimmedBlanks(sentences[i]));
  }
  return result;
}

}  // namespace quillmark::service
