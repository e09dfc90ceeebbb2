#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace quillmark {

/// What the screens of the language list and of the tone list say, each text in the interface language.
class ListMessages {
 public:
  static const ListMessages languages;
  static const ListMessages tones;

  /// Of an alert, or of the line under a field.
  struct Message {
    std::string title;
    std::string text;
    friend bool operator==(const Message&, const Message&) = default;
  };

  /// Asked before `count` items go; the buttons are "Cancel" and "Delete".
  Message deletionQuestion(std::size_t count) const;
  /// Nothing when all went; `failures` is what ConfigurableStore::remove() returned for `asked` ids.
  std::optional<Message> deletionFailure(std::size_t failures, std::size_t asked) const;

  /// What is wrong with a language before LanguageStore::addLanguage() is asked; an empty id means that none is picked.
  static std::optional<Message> problemWithLanguage(const std::string& id);
  static Message languageRefused();
  /// What is wrong with a tone's name before ToneStore::addCustomTone() is asked.
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
