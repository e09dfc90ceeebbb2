#pragma once

#include <QListView>
#include <QStyledItemDelegate>
#include <string>

namespace quillmark {

/// Gives a list the look of all lists: bare, with rows of one height, which it hears the pointer move over.
void styleList(QListView& list);

/// What a row shows, besides its title.
struct RowStyle {
  std::string symbol = {};  ///< before the title; empty leaves its place free
  int symbolSide = 20;
  int gap = 10;           ///< between symbol and title
  bool isLit = false;     ///< on a ground of the accent colour
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
