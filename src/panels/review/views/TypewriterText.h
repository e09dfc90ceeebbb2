#pragma once

#include <string_view>

#include "base/Signal.h"
#include "panels/review/MarkdownSigns.h"
#include "panels/review/MarkdownText.h"
#include "panels/review/ResultText.h"
#include "widgets/Pulse.h"
#include "widgets/TextColumn.h"

namespace quillmark {

/// A result while it grows and after: as it is, or with its Markdown drawn if it shows any sign of it. A chunk costs
/// what it brings, whatever there is already.
class TypewriterText : public TextColumn {
 public:
  TypewriterText(const ResultText& text, const Observable<bool>& isStreaming, QWidget* parent = nullptr);

  void setStyled(bool styled);

 protected:
  bool event(QEvent* event) override;

 private:
  /// Chunks that come faster than they can be drawn are drawn together, but not more of them than a frame has time for.
  void textChanged(std::size_t kept);
  void postDraw();
  void drawNext();
  void drawAll();
  /// What is drawn goes on with this part of the text.
  void draw(std::string_view added);

  const ResultText& text_;
  const Observable<bool>& isStreaming_;
  bool styled_ = false;
  bool drawPosted_ = false;
  std::size_t drawn_ = 0;     ///< so many bytes of the text are drawn as they are now
  std::size_t lastLine_ = 0;  ///< byte at which the last line of a plain text begins
  bool asMarkdown_ = false;
  MarkdownSigns signs_;
  MarkdownText markdown_;
  Pulse pulse_;
  Connections connections_;
};

}  // namespace quillmark
