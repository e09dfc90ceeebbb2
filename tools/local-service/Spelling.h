#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

class Hunspell;

namespace quillmark::service {

/// Corrects the spelling of English prose with the system's Hunspell dictionary. Any thread.
class Spelling {
 public:
  /// Throws std::runtime_error when a dictionary file is missing.
  explicit Spelling(const std::string& dictionary = "/usr/share/hunspell/en_US");
  ~Spelling();

  /// The text with wrong words replaced by the likeliest right ones, and doubled words reduced to one. All blanks and
  /// line ends, code, addresses, names inside a sentence and words in other scripts come back byte for byte. A text of
  /// mostly unknown words with hardly any common English words is taken for another language and comes back unchanged.
  std::string corrected(std::string_view text);

 private:
  bool isKnown(const std::string& word);
  /// The likeliest right word in the same casing, or the word itself.
  const std::string& replacementFor(const std::string& word);
  std::string findReplacement(const std::string& word);

  // Look-ups change the dictionary's state; the server makes them on many threads.
  std::mutex mutex_;
  std::unique_ptr<Hunspell> hunspell_;
  std::unordered_map<std::string, std::string> replacements_;
};

}  // namespace quillmark::service
