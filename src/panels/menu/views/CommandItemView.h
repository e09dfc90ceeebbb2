#pragma once

#include "widgets/List.h"

namespace quillmark {

/// One row of the command menu: icon, title, and the key that runs it.
class CommandItemView : public RowDelegate {
 public:
  static constexpr int height = 36;
  enum Role { symbol = Qt::UserRole, lit, runsByReturn };

  explicit CommandItemView(QObject* parent) : RowDelegate(height, parent) {}

 protected:
  RowStyle styleOf(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace quillmark
