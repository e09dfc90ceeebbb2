#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillmark {

/// The general pasteboard, which all applications copy to and paste from. Main thread only.
class Pasteboard {
 public:
  /// Called with the text, or with nothing: the pasteboard is empty or holds no text, or its owner did not answer in
  /// time.
  using Reader = std::function<void(std::optional<std::string>)>;

  Pasteboard() = default;
  Pasteboard(const Pasteboard&) = delete;
  Pasteboard& operator=(const Pasteboard&) = delete;
  virtual ~Pasteboard() = default;

  /// Empties the pasteboard. A copy key posted afterwards finds it empty.
  virtual void clearContents() = 0;
  /// Puts a text on the pasteboard and keeps serving it until another application takes the pasteboard.
  virtual void setString(std::string text) = 0;
  /// Never blocks: the reader is called later on the main thread, or at once when the answer is known.
  virtual void readString(Reader reader) = 0;
};

}  // namespace quillmark
