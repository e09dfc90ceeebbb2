#pragma once

#include <string_view>

#include "base/Signal.h"
#include "panels/review/MarkdownSigns.h"
#include "panels/review/MarkdownText.h"
#include "panels/review/ResultText.h"
#include "widgets/Pulse.h"
#include "widgets/TextColumn.h"

namespace quillmark {

/// A result while it grows and afterwards: as plain text, or with its Markdown drawn if it shows any. The cost of a
/// chunk depends on the chunk alone.
class TypewriterText : public TextColumn {
 public:
  TypewriterText(const ResultText& text, const Observable<bool>& isStreaming, QWidget* parent = nullptr);

  void setStyled(bool styled);

 protected:
  bool event(QEvent* event) override;

 private:
  /// Chunks that arrive faster than they can be drawn are drawn together, up to what fits into one frame.
  void textChanged(std::size_t kept);
  void postDraw();
  void drawNext();
  void drawAll();
  /// Draws this part of the text after what is drawn already.
  void draw(std::string_view added);

  const ResultText& text_;
  const Observable<bool>& isStreaming_;
  bool styled_ = false;
  bool drawPosted_ = false;
  std::size_t drawn_ = 0;     ///< number of bytes of the current text that are drawn
  std::size_t lastLine_ = 0;  ///< byte at which the last line of a plain text begins
  bool asMarkdown_ = false;
  MarkdownSigns signs_;
  MarkdownText markdown_;
  Pulse pulse_;
  Connections connections_;
};

}  // namespace quillmark
