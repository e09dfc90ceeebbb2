#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace quillmark {

/// The messages of the language and tone list screens, in the interface language.
class ListMessages {
 public:
  static const ListMessages languages;
  static const ListMessages tones;

  /// For an alert, or for the line under a field.
  struct Message {
    std::string title;
    std::string text;
    friend bool operator==(const Message&, const Message&) = default;
  };

  /// The question before `count` items are deleted; the buttons are "Cancel" and "Delete".
  Message deletionQuestion(std::size_t count) const;
  /// Nothing when all were deleted; `failures` is what ConfigurableStore::remove() returned for `requested` ids.
  std::optional<Message> deletionFailure(std::size_t failures, std::size_t requested) const;

  /// Why LanguageStore::addLanguage() would refuse this language; an empty id means that none is picked.
  static std::optional<Message> problemWithLanguage(const std::string& id);
  static Message languageRefused();
  /// Why ToneStore::addCustomTone() would refuse this name.
  static std::optional<Message> problemWithTone(const std::string& name);
  static Message toneRefused();

 private:
  struct Texts {
    const char* deleteTitle;
    const char* deleteOne;
    const char* deleteSeveral;  // one parameter, the count
    const char* failureTitle;
    const char* allFailed;
    const char* someFailed;
  };
  explicit constexpr ListMessages(const Texts& texts) : texts_(texts) {}

  Texts texts_;
};

}  // namespace quillmark
