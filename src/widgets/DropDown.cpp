#include "widgets/DropDown.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "widgets/ButtonInterface.h"
#include "widgets/List.h"
#include "widgets/Look.h"

namespace quillmark {

namespace {

constexpr int rowPadding = 10;
constexpr int markSide = 12;
constexpr int markGap = 6;
constexpr int widest = 320;
constexpr int margin = 4;

/// A button that opens a list.
class MenuButtonInterface : public ButtonInterface {
 public:
  explicit MenuButtonInterface(DropDown& menu) : ButtonInterface(menu, QAccessible::ButtonMenu), menu_(menu) {}

  QAccessible::State state() const override {
    auto state = ButtonInterface::state();
    state.hasPopup = state.expandable = true;
    state.expanded = menu_.isOpen();
    return state;
  }

 private:
  DropDown& menu_;
};

/// Titles, with a check mark before the chosen one.
class Rows : public RowDelegate {
 public:
  explicit Rows(QObject* parent) : RowDelegate(look::targetHeight, parent) {}

 protected:
  RowStyle styleOf(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {.symbol = index.data(Qt::CheckStateRole) == Qt::Checked ? "checkmark" : "",
            .symbolSide = markSide,
            .gap = markGap,
            .isLit = bool(option.state & QStyle::State_Selected),
            .isFaint = !(index.flags() & Qt::ItemIsEnabled),
            .elision = Qt::ElideMiddle};
  }
};

/// A list with a background of its own.
class List : public QListWidget {
 public:
  explicit List(QWidget* parent) : QListWidget(parent) {
    styleList(*this);
    setItemDelegate(new Rows(this));
    setViewportMargins(margin, margin, margin, margin);
    QObject::connect(this, &QListWidget::itemEntered, this, [this](QListWidgetItem* item) {
      if (item->flags() & Qt::ItemIsEnabled) {
        setCurrentItem(item);
      }
    });
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::Paint) {  // of the frame, around the viewport
      QPainter painter(this);
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(QPen(look::hairline(palette()), 1 / devicePixelRatioF()));
      painter.setBrush(look::card(palette()));
      painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), look::fieldRadius, look::fieldRadius);
    }
    return QListWidget::event(event);
  }
};

}  // namespace

DropDown::DropDown(const QString& help, std::function<std::vector<Item>()> items, QWidget* parent)
    : Button(Look::plain, parent), help_(help), items_(std::move(items)) {
  setTrailingSymbol("chevron.down");
  QObject::connect(this, &QPushButton::clicked, this, [this] {
    if (isOpen()) {
      dismiss();
    } else {
      open();
    }
  });
}

QAccessibleInterface* DropDown::makeAccessible() { return new MenuButtonInterface(*this); }

void DropDown::setLabel(const QString& label) {
  describe(label, "", help_);
  setAccessibleName(help_ + QStringLiteral(": ") + label);
}

void DropDown::open() {
  shown_ = items_();
  list_ = new List(window());
  list_->setAccessibleName(help_);
  int width = this->width();
  for (const Item& item : shown_) {
    auto* const row = new QListWidgetItem(item.title, list_);
    row->setCheckState(item.chosen ? Qt::Checked : Qt::Unchecked);
    row->setFlags(item.choose ? Qt::ItemIsSelectable | Qt::ItemIsEnabled : Qt::NoItemFlags);
    if (item.chosen) {
      list_->setCurrentItem(row);
    }
    width = std::max(width, list_->fontMetrics().horizontalAdvance(item.title) + 2 * (rowPadding + margin) + markSide +
                                markGap + list_->verticalScrollBar()->sizeHint().width());
  }
  const QRect area =
      window()->contentsRect().adjusted(look::chipRadius, look::chipRadius, -look::chipRadius, -look::chipRadius);
  const QRect button(mapTo(window(), QPoint()), size());
  const int above = button.top() - area.top() - margin;
  const int below = area.bottom() - button.bottom() - margin;
  const bool upwards = above > below;
  const int height = std::min(int(shown_.size()) * look::targetHeight + 2 * margin, upwards ? above : below);
  width = std::min({width, widest, area.width()});
  const int left = layoutDirection() == Qt::RightToLeft ? button.right() + 1 - width : button.left();
  list_->setGeometry(std::clamp(left, area.left(), area.right() + 1 - width),
                     upwards ? button.top() - margin - height : button.bottom() + margin, width, height);
  QObject::connect(list_, &QListWidget::itemClicked, this,
                   [this](QListWidgetItem*) { chooseRow(list_->currentRow()); });
  list_->installEventFilter(this);
  qApp->installEventFilter(this);
  list_->show();
  list_->raise();
  list_->setFocus();
  list_->scrollToItem(list_->currentItem(), QAbstractItemView::PositionAtCenter);
}

void DropDown::dismiss() {
  if (!list_) {
    return;
  }
  qApp->removeEventFilter(this);
  auto* const list = std::exchange(list_, nullptr);
  const bool hadKeyboard = list->hasFocus();
  list->hide();
  list->deleteLater();
  if (hadKeyboard) {
    setFocus();
  }
}

void DropDown::chooseRow(int row) {
  if (row < 0 || row >= int(shown_.size()) || !shown_[std::size_t(row)].choose) {
    return;
  }
  const auto choose = shown_[std::size_t(row)].choose;
  dismiss();
  choose();
}

bool DropDown::eventFilter(QObject* object, QEvent* event) {
  if (!list_) {
    return false;
  }
  if (object == list_ && event->type() == QEvent::KeyPress) {
    switch (static_cast<QKeyEvent*>(event)->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
      case Qt::Key_Space:
        chooseRow(list_->currentRow());
        return true;
      case Qt::Key_Escape:
      case Qt::Key_Tab:
      case Qt::Key_Backtab:
        dismiss();
        return true;
      default:
        return false;
    }
  }
  if (event->type() == QEvent::MouseButtonPress) {
    const auto* const widget = qobject_cast<QWidget*>(object);
    if (widget && widget != this && widget != list_ && !list_->isAncestorOf(widget)) {
      dismiss();
    }
  }
  return false;
}

void DropDown::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up) {
    open();
  } else {
    Button::keyPressEvent(event);
  }
}

void DropDown::hideEvent(QHideEvent* event) {
  dismiss();
  Button::hideEvent(event);
}

}  // namespace quillmark
