#pragma once

#include <QTextLayout>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "widgets/Accessibility.h"
#include "widgets/ScrollArea.h"

namespace quillmark {

/// One paragraph of a TextColumn with its decoration. Distances are in points from the leading edge, which is the right
/// one for a text that runs from right to left.
struct TextBlock {
  QString text;
  QList<QTextLayout::FormatRange> formats;
  QFont font;
  QColor colour;
  Qt::Alignment alignment = Qt::AlignLeading;
  double lead = 0;   ///< where the text begins
  double gap = 0;    ///< space to the block before
  double above = 0;  ///< padding inside the block
  double below = 0;

  QString marker;  ///< a bullet or number on the first line
  QFont markerFont;
  QColor markerColour;
  double markerAt = 0;
  std::string symbol;  ///< name of a symbol of 12 by 12 points, in the text's colour
  QString sign;        ///< text alternative of the symbol
  double symbolAt = 0;
  QColor ground;  ///< a rounded background from `groundAt` to the other edge
  double groundAt = 0;
  QColor bar;  ///< of a quotation
  double barAt = 0;
  QColor line;  ///< drawn in place of text
};

/// Scrolling read-only paragraphs whose text can be selected and copied. It never claims the primary selection: an
/// editor that loses it forgets what was selected. The cost of replacing the last blocks does not depend on the blocks
/// before them.
class TextColumn : public ScrollArea, public AccessibleView {
 public:
  explicit TextColumn(QWidget* parent = nullptr);
  ~TextColumn() override;

  QAccessibleInterface* makeAccessible() override;
  void setTextMargins(QMarginsF margins);
  /// Replaces the blocks from this one on. A view scrolled to the end stays there when `followEnd` is true.
  void replaceFrom(std::size_t first, std::vector<TextBlock> blocks, bool followEnd = false);
  std::size_t blockCount() const { return blocks_.size(); }

  /// Width of the widest line and height of all blocks, without the margins, at the current width.
  QSizeF textSize() const { return {widest_, height_}; }
  /// The height needed to show everything at this width.
  double heightForText() const { return height_ + margins_.top() + margins_.bottom(); }

  void setOpacity(double opacity);
  QString selectedText() const;
  /// Markers, text alternatives and texts, one line per block.
  const QString& allText() const;
  void selectAll();
  /// Whether there was something to copy.
  bool copySelection();

  std::function<void()> measured;                     ///< after each layout
  std::function<void()> styleChanged;                 ///< blocks must be rebuilt with new colours or fonts
  std::function<void(const QString&)> copyRequested;  ///< the user copies the selection

  QRectF rectOfCharacter(int offset) const;  ///< of allText(), in the viewport
  int offsetAt(QPointF point) const;

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  struct Laid;
  struct Place {
    std::size_t block = 0;
    int position = 0;  ///< in the block's text
    friend auto operator<=>(const Place&, const Place&) = default;
  };

  void layOutFrom(std::size_t first);
  void layOut(Laid& laid, double width) const;
  double textWidth() const;
  std::size_t blockAt(double y) const;
  Place placeAt(QPointF viewportPoint) const;
  void setSelection(Place anchor, Place cursor);
  std::pair<Place, Place> selection() const;
  void paintBlock(QPainter& painter, const Laid& laid, std::size_t index) const;

  std::vector<std::unique_ptr<Laid>> blocks_;
  QMarginsF margins_;
  double widest_ = 0;
  double height_ = 0;
  double opacity_ = 1;
  Place anchor_;
  Place cursor_;
  bool selecting_ = false;
  mutable std::optional<QString> allText_;
};

}  // namespace quillmark
