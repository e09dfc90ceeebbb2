#include "panels/menu/views/CommandItemView.h"

namespace quillmark {

RowStyle CommandItemView::styleOf(const QStyleOptionViewItem&, const QModelIndex& index) const {
  return {.symbol = index.data(symbol).toString().toStdString(),
          .isLit = index.data(lit).toBool(),
          .trailing = index.data(runsByReturn).toBool() ? QStringLiteral("⏎") : QString()};
}

}  // namespace quillmark
