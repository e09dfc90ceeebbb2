#pragma once

#include <string>
#include <string_view>

#include "local-service/Spelling.h"

namespace quillmark::service {

/// What a system prompt asks for, as far as the service can tell.
enum class Task {
  fixGrammar,
  improveWriting,
  simplifyLanguage,
  makeShorter,
  summarize,
  titleCase,
  asEmojis,
  translateToYoda,
  asEmail,
  asTweet,
  humanizeText,
  translateTitle,  ///< the name of an installed command
  checkKey,        ///< the question whether a key works
  unknown,         ///< everything that needs a language model
};

/// Recognises the task by the opening words of the prompt, ignoring leading blanks.
Task taskOf(std::string_view systemPrompt);

/// Answers requests by plain text processing, always the same for the same request. Any thread.
class TextWork {
 public:
  explicit TextWork(Spelling& spelling) : spelling_(spelling) {}

  std::string answer(std::string_view systemPrompt, std::string_view text);

 private:
  Spelling& spelling_;
};

/// The text, and below it a note that this needs a language model and how to attach one.
std::string withNote(std::string_view text);

// The single operations. All keep what is not prose (code, addresses, tags), and all but the last keep the line ends.

/// Each line as a title: every word capitalised but conjunctions, articles and short adpositions in the middle.
std::string titleCased(std::string_view text);
/// Without bracketed asides and filler words.
std::string shortened(std::string_view text);
/// Plain words for long ones.
std::string simplified(std::string_view text);
/// Contracted forms, and no "Furthermore," at the start of a sentence.
std::string humanized(std::string_view text);
/// Sentences begin with a capital letter.
std::string withSentenceCapitals(std::string_view text);
/// Moves what follows the verb to the front: "You are strong." is "Strong, you are."
std::string inYodaOrder(std::string_view text);
/// Emoji for the words that have one.
std::string withEmojis(std::string_view text);
/// As many whole sentences as fit into 280 characters, at least the beginning of the first.
std::string asTweet(std::string_view text);
/// A greeting, the text and a closing. Empty names are left out.
std::string asEmail(std::string_view text, std::string_view name, std::string_view role);
/// The three sentences that share most words with the rest, in their order; shorter texts as they are.
std::string summarized(std::string_view text);

}  // namespace quillmark::service
