#include "panels/review/views/TypewriterText.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

#include "base/Localization.h"
#include "base/Text.h"
#include "base/Trace.h"
#include "panels/review/views/ReviewBlocks.h"
#include "widgets/QtText.h"
#include "widgets/TextBlocks.h"

namespace quillmark {

namespace {

constexpr std::size_t mostAtOnce = 16'384;  ///< bytes that can be drawn within one frame

const auto drawEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

/// The part of the pending text that one frame draws. It ends at a line end, however long the line, so that no line is
/// laid out again for its next part.
std::string_view nextPart(std::string_view added) {
  if (added.size() <= mostAtOnce) {
    return added;
  }
  auto end = added.rfind('\n', mostAtOnce - 1);
  if (end == std::string_view::npos) {
    end = added.find('\n', mostAtOnce);
  }
  return end == std::string_view::npos ? added : added.substr(0, end + 1);
}

}  // namespace

TypewriterText::TypewriterText(const ResultText& text, const Observable<bool>& isStreaming, QWidget* parent)
    : TextColumn(parent),
      text_(text),
      isStreaming_(isStreaming),
      pulse_(1, 0.8, 1000, [this](double opacity) { setOpacity(opacity); }) {
  setTextMargins({blocks::margin, 0, blocks::margin, 0});
  setAccessibleName(qt(quillmark::tr("Result")));
  styleChanged = [this] { drawAll(); };
  connections_ += text_.changed.connect([this](std::size_t kept) { textChanged(kept); });
  connections_ += isStreaming_.observe([this](bool streaming) {
    if (!streaming) {
      pulse_.stop();
    } else if (!pulse_.running()) {
      pulse_.start(*this);
    }
  });
  drawAll();
}

void TypewriterText::setStyled(bool styled) {
  if (styled_ != styled) {
    styled_ = styled;
    drawAll();
  }
}

void TypewriterText::textChanged(std::size_t kept) {
  if (kept < drawn_) {
    drawn_ = 0;
  }
  if (text_.empty()) {
    drawAll();  // at once: the panel opens before the event loop's next iteration and must not measure the old text
  } else {
    postDraw();
  }
}

void TypewriterText::postDraw() {
  if (!drawPosted_) {
    drawPosted_ = true;
    QCoreApplication::postEvent(this, new QEvent(drawEvent));
  }
}

void TypewriterText::drawAll() {
  drawn_ = 0;
  draw(text_.get());
}

void TypewriterText::drawNext() {
  drawPosted_ = false;
  draw(nextPart(std::string_view(text_.get()).substr(drawn_)));
  if (drawn_ < text_.get().size()) {
    postDraw();
  }
}

void TypewriterText::draw(std::string_view added) {
  const bool grows = drawn_ > 0;
  drawn_ += added.size();
  const std::string_view whole = std::string_view(text_.get()).substr(0, drawn_);
  std::size_t first = 0;
  const bool wasMarkdown = asMarkdown_;
  asMarkdown_ = false;
  if (styled_) {
    if (!grows) {
      signs_.reset();
    }
    signs_.append(added);
    first = grows ? markdown_.append(added) : markdown_.setText(whole);
    asMarkdown_ = signs_.found();
  }
  const bool follow = grows || isStreaming_.get();
  if (asMarkdown_) {
    first = grows && wasMarkdown ? first : 0;
    replaceFrom(first, blocks::markdown(markdown_.lines(), first, palette()), follow);
  } else {
    first = grows && !wasMarkdown ? blockCount() - 1 : 0;
    lastLine_ = first == 0 ? 0 : lastLine_;
    auto lines = blocks::plain(whole.substr(lastLine_), palette());
    lastLine_ = std::size_t(text::splitAtNewlines(whole.substr(lastLine_)).back().data() - whole.data());
    replaceFrom(first, std::move(lines), follow);
  }
  trace::mark(trace::reviewTextDrawn);
}

bool TypewriterText::event(QEvent* event) {
  if (event->type() == drawEvent) {
    drawNext();
    return true;
  }
  return TextColumn::event(event);
}

}  // namespace quillmark
