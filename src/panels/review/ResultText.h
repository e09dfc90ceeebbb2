#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/Signal.h"

namespace quillmark {

/// A text that grows at its end and is occasionally replaced. Main thread only.
class ResultText {
 public:
  const std::string& get() const { return text_; }
  bool empty() const { return text_.empty(); }

  /// Notifies nobody when the text is the same.
  void set(std::string text) {
    if (text == text_) {
      return;
    }
    const auto difference = std::ranges::mismatch(text_, text).in1 - text_.begin();
    auto kept = static_cast<std::size_t>(difference);
    while (kept > 0 && (isInsideCodePoint(text_, kept) || isInsideCodePoint(text, kept))) {
      --kept;
    }
    text_ = std::move(text);
    changed.emit(kept);
  }

  void append(std::string_view piece) {
    if (!piece.empty()) {
      const std::size_t kept = text_.size();
      text_ += piece;
      changed.emit(kept);
    }
  }

  /// The text has changed from byte `kept` on, which is the beginning of a code point; everything before it is
  /// unchanged.
  Signal<std::size_t> changed;

 private:
  static bool isInsideCodePoint(const std::string& text, std::size_t place) {
    return place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U;
  }

  std::string text_;
};

}  // namespace quillmark
