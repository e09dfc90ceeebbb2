#pragma once

#include <QStyledItemDelegate>

namespace quillmark {

/// One row of the command menu: icon, title, and the key that runs it while it is selected.
class CommandItemView : public QStyledItemDelegate {
 public:
  static constexpr int height = 36;
  enum Role { symbol = Qt::UserRole, selected, hovered };

  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace quillmark
