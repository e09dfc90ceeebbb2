#pragma once

#include <QListView>
#include <QStyledItemDelegate>
#include <string>

namespace quillmark {

/// Gives a list the common style: no frame, rows of equal height, and mouse tracking.
void styleList(QListView& list);

/// What a row shows, besides its title.
struct RowStyle {
  std::string symbol = {};  ///< before the title; empty leaves its space blank
  int symbolSide = 20;
  int gap = 10;           ///< between symbol and title
  bool isLit = false;     ///< on a background in the accent colour
  bool isFaint = false;   ///< can't be chosen
  QString trailing = {};  ///< at the far edge
  Qt::TextElideMode elision = Qt::ElideRight;
};

/// Draws rows of a symbol and a title, mirrored where the interface is.
class RowDelegate : public QStyledItemDelegate {
 public:
  explicit RowDelegate(int height, QObject* parent = nullptr) : QStyledItemDelegate(parent), height_(height) {}

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, height_}; }
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  virtual RowStyle styleOf(const QStyleOptionViewItem& option, const QModelIndex& index) const = 0;

 private:
  int height_;
};

}  // namespace quillmark
