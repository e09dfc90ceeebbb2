#include "panels/menu/views/CommandMenuView.h"

#include <QAbstractListModel>
#include <QCursor>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/Localization.h"
#include "base/Trace.h"
#include "panels/menu/views/CommandItemView.h"
#include "widgets/Accessibility.h"
#include "widgets/Look.h"
#include "widgets/Symbols.h"
#include "widgets/TextBlocks.h"
#include "widgets/ThinScrollBar.h"

namespace quillmark {

namespace {

constexpr int menuWidth = 420;
constexpr int fieldHeight = 44;
constexpr int listMargin = 8;
/// Half of the ninth row is in sight, so that one sees that there is more.
constexpr int listHeight = 8 * CommandItemView::height + CommandItemView::height / 2 + listMargin;
constexpr int iconSide = 20;

QString qt(const std::string& string) { return QString::fromStdString(string); }

/// The keys that the menu cares about, by their positions.
std::optional<int> keyCodeOf(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return KeyPressModifier::returnKey;
    case Qt::Key_Tab:
      return KeyPressModifier::tabKey;
    case Qt::Key_Down:
      return KeyPressModifier::downArrow;
    case Qt::Key_Up:
      return KeyPressModifier::upArrow;
    default:
      return std::nullopt;
  }
}

/// A line of text without a frame. What the pointer selects in it does not become the primary selection: the editor
/// behind would forget its own.
class Field : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) {
      QLineEdit::mouseReleaseEvent(event);
    }
  }
};

/// Says in the middle that there is nothing.
class Nothing : public QWidget {
 public:
  explicit Nothing(QWidget* parent) : QWidget(parent) { setRole(*this, QAccessible::StaticText); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setFont(look::font(15, QFont::Medium));
    painter.setPen(look::secondary(palette()));
    painter.drawText(rect(), Qt::AlignCenter, accessibleName());
  }
};

}  // namespace

/// The visible commands as rows of a list.
class CommandMenuView::Rows : public QAbstractListModel {
 public:
  explicit Rows(CommandMenuState& state) : state_(state), count_(int(state.visibleCommands().size())) {}

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : count_; }

  QVariant data(const QModelIndex& index, int role) const override {
    const auto& commands = state_.visibleCommands();
    const auto row = std::size_t(index.row());
    if (row >= commands.size()) {
      return {};
    }
    const Command& command = *commands[row];
    switch (role) {
      case Qt::DisplayRole:
      case Qt::AccessibleTextRole:
        return qt(command.displayName());
      case CommandItemView::symbol:
        return qt(std::string(command.icon()));
      case CommandItemView::selected:
        return state_.isSelected(command);
      case CommandItemView::hovered:
        return state_.hoveredIndex.get() == row;
      default:
        return {};
    }
  }

  void refill() {
    beginResetModel();
    count_ = int(state_.visibleCommands().size());
    endResetModel();
  }

 private:
  CommandMenuState& state_;
  int count_;
};

/// What stands in the place of the list while a task is described.
class CommandMenuView::Task : public QWidget {
 public:
  explicit Task(QWidget* parent) : QWidget(parent) {
    setRole(*this, QAccessible::StaticText);
    column_.measured = [this] { place(); };
    setTask({});
  }

  void setTask(const std::string& task) {
    hasTask_ = !task.empty();
    setAccessibleName(
        qt(hasTask_ ? quillmark::tr("Ready to execute:") : quillmark::tr("Type your task and press Enter to execute")));
    column_.setAccessibleName(accessibleName());
    column_.setVisible(hasTask_);
    column_.replaceFrom(0, blocks::plain(task, palette()), true);
    update();
  }

 protected:
  void resizeEvent(QResizeEvent*) override { place(); }

  void paintEvent(QPaintEvent*) override {
    constexpr int large = 40;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    if (!hasTask_) {
      const int top = (height() - large - 40) / 2;
      painter.drawPixmap((width() - large) / 2, top,
                         symbols::pixmap("sparkles", large, devicePixelRatioF(), look::secondary(palette())));
      painter.setFont(look::font(13));
      painter.setPen(look::secondary(palette()));
      painter.drawText(QRect(16, top + large + 12, width() - 32, 28), Qt::AlignCenter | Qt::TextWordWrap,
                       accessibleName());
      return;
    }
    const QRect card = cardRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::withOpacity(accent, 0.1));
    painter.drawRoundedRect(card, look::fieldRadius, look::fieldRadius);
    const QRect sign(card.left() + 12, card.top() + 12, iconSide, iconSide);
    painter.drawPixmap(QStyle::visualRect(layoutDirection(), rect(), sign),
                       symbols::pixmap("sparkles", iconSide, devicePixelRatioF(), accent));
    painter.setFont(look::font(13, QFont::Medium));
    painter.setPen(look::secondary(palette()));
    const QRect title(sign.right() + 9, sign.top(), card.right() - sign.right() - 20, sign.height());
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), title), look::leading(layoutDirection()),
                     accessibleName());
  }

 private:
  static constexpr int titleSpace = 40;

  QRect cardRect() const {
    const int needed = titleSpace + int(std::ceil(column_.heightForText())) + 12;
    return {12, 12, width() - 24, std::min(needed, height() - 24)};
  }

  void place() {
    const QRect card = cardRect();
    const QRect box = card.adjusted(12, titleSpace, -12, -12);
    if (column_.geometry() != box) {
      column_.setGeometry(box);
    }
    update();
  }

  bool hasTask_ = false;
  TextColumn column_{this};
};

CommandMenuView::CommandMenuView(CommandPanelViewModel& viewModel, QWidget* parent)
    : QWidget(parent),
      viewModel_(viewModel),
      state_(viewModel.view()),
      rows_(std::make_unique<Rows>(state_)),
      field_(new Field(&head_)),
      pages_(&content_),
      nothing_(new Nothing(&content_)),
      task_(new Task(&content_)) {
  setFixedWidth(CommandMenuView::sizeHint().width());
  setWindowTitle(qt(quillmark::tr("Command Menu")));
  setFocusProxy(field_);

  field_->setFrame(false);
  field_->setFont(look::font(15));
  field_->setAutoFillBackground(false);
  field_->setStyleSheet(QStringLiteral("background: transparent"));
  field_->installEventFilter(this);
  modeButton_.setFocusPolicy(Qt::NoFocus);
  modeButton_.setTint(QPalette::PlaceholderText);
  head_.setFixedHeight(fieldHeight);
  auto* const row = new QHBoxLayout(&head_);
  row->setContentsMargins({});
  row->setSpacing(0);
  row->addSpacing(look::panelPadding + iconSide + 8);
  row->addWidget(field_);
  row->addWidget(&modeButton_);
  row->addSpacing(10 - PanelButton::ringRoom);

  list_.setAccessibleName(qt(quillmark::tr("Commands")));
  list_.setFrameShape(QFrame::NoFrame);
  list_.setVerticalScrollBar(new ThinScrollBar);
  list_.setFocusPolicy(Qt::NoFocus);
  list_.setFont(look::font(13));
  list_.setItemDelegate(new CommandItemView(&list_));
  list_.setUniformItemSizes(true);
  list_.setSelectionMode(QAbstractItemView::NoSelection);
  list_.setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_.verticalScrollBar()->setSingleStep(CommandItemView::height / 2);
  list_.viewport()->setAutoFillBackground(false);
  list_.viewport()->setMouseTracking(true);
  list_.viewport()->installEventFilter(this);
  list_.setModel(rows_.get());
  nothing_->setAccessibleName(qt(quillmark::tr("No commands found")));
  pages_.addWidget(&list_);
  pages_.addWidget(nothing_);
  pages_.addWidget(task_);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(&head_);
  auto* const inset = new QHBoxLayout;
  inset->setContentsMargins(listMargin, listMargin, listMargin, 0);
  inset->addWidget(&content_);
  column->addLayout(inset);

  QObject::connect(field_, &QLineEdit::textChanged, this, [this](const QString& typed) {
    if (const auto searched = typed.toStdString(); searched != viewModel_.searchText.get()) {
      viewModel_.searchText.set(searched);
    }
  });
  QObject::connect(&modeButton_, &QPushButton::clicked, this, [this] { viewModel_.toggleMode(); });
  QObject::connect(&list_, &QListView::clicked, this,
                   [this](const QModelIndex& index) { state_.click(std::size_t(index.row())); });

  changes_[0] = viewModel_.searchText.observe([this](const std::string& searched) {
    if (const QString shown = qt(searched); shown != field_->text()) {
      field_->setText(shown);
    }
    if (viewModel_.currentMode.get() == CommandMenuMode::freestyle) {
      task_->setTask(searched);
    }
  });
  changes_[1] = viewModel_.currentMode.observe([this](CommandMenuMode) { showMode(); });
  changes_[2] = viewModel_.isCommandOpen.observe([this](bool open) {
    if (open) {
      lastPointer_ = QCursor::pos();  // a menu that opens under the pointer is not entered by it
      list_.scrollToTop();
      field_->setFocus();
    }
  });
  changes_[3] = state_.visibleCommandsChanged.connect([this] { showRows(); });
  changes_[4] = state_.selectedIndex.observe([this](const auto&) { showSelection(); });
  changes_[5] = state_.hoveredIndex.observe([this](const auto&) { list_.viewport()->update(); });
  showMode();
}

CommandMenuView::~CommandMenuView() {
  // On their way out they would still tell of themselves.
  list_.viewport()->removeEventFilter(this);
  field_->removeEventFilter(this);
  list_.setModel(nullptr);
}

QSize CommandMenuView::sizeHint() const { return {menuWidth, fieldHeight + 1 + listHeight}; }

void CommandMenuView::showMode() {
  const bool isFilter = viewModel_.currentMode.get() == CommandMenuMode::filter;
  const std::string placeholder =
      isFilter ? quillmark::tr("Search for Commands") : quillmark::tr("Describe your task...");
  field_->setPlaceholderText(qt(placeholder));
  field_->setAccessibleName(qt(placeholder));
  modeButton_.describe(
      {}, isFilter ? "pencil.and.scribble" : "sparkles",
      qt(isFilter ? quillmark::tr("Switch to Freestyle mode (Tab)") : quillmark::tr("Switch to Filter mode (Tab)")));
  task_->setTask(isFilter ? "" : viewModel_.searchText.get());
  showRows();
  update();
}

void CommandMenuView::showRows() {
  rows_->refill();
  list_.scrollToTop();
  if (viewModel_.currentMode.get() == CommandMenuMode::freestyle) {
    pages_.setCurrentWidget(task_);
  } else if (state_.visibleCommands().empty()) {
    pages_.setCurrentWidget(nothing_);
  } else {
    pages_.setCurrentWidget(&list_);
  }
}

void CommandMenuView::showSelection() {
  const auto selected = state_.selectedIndex.get();
  const QModelIndex index = selected ? rows_->index(int(*selected), 0) : QModelIndex();
  list_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  list_.scrollTo(index);
  list_.viewport()->update();
}

bool CommandMenuView::eventFilter(QObject* object, QEvent* event) {
  if (object == field_ && event->type() == QEvent::KeyPress) {
    const auto& press = static_cast<const QKeyEvent&>(*event);
    const auto modifiers = press.modifiers() & ~Qt::KeypadModifier;
    if (press.key() == Qt::Key_Escape) {
      viewModel_.cancel();
    } else if (const auto code = keyCodeOf(press.key()); code && !modifiers) {
      state_.keyDown(*code);
    }
    // The field sees the key as well.
  } else if (object == list_.viewport()) {
    if (event->type() == QEvent::MouseMove) {
      const auto& move = static_cast<const QMouseEvent&>(*event);
      pointerAt(move.globalPosition().toPoint(), move.position().toPoint());
    } else if (event->type() == QEvent::Leave) {
      state_.hover(std::nullopt);
    }
  }
  return QWidget::eventFilter(object, event);
}

void CommandMenuView::pointerAt(QPoint global, QPoint inList) {
  if (global == lastPointer_) {
    return;  // rows that scroll under a resting pointer are not entered
  }
  lastPointer_ = global;
  const QModelIndex index = list_.indexAt(inList);
  state_.hover(index.isValid() ? std::optional(std::size_t(index.row())) : std::nullopt);
}

void CommandMenuView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool isFilter = viewModel_.currentMode.get() == CommandMenuMode::filter;
  const QRect icon(look::panelPadding, (fieldHeight - iconSide) / 2, iconSide, iconSide);
  painter.drawPixmap(QStyle::visualRect(layoutDirection(), QRect(0, 0, width(), fieldHeight), icon),
                     symbols::pixmap(isFilter ? "sparkle.magnifyingglass" : "pencil.and.scribble", iconSide,
                                     devicePixelRatioF(), look::secondary(palette())));
  const double hairline = 1 / devicePixelRatioF();
  look::drawHairline(painter, QRectF(hairline, fieldHeight, width() - 2 * hairline, 1), palette());
}

}  // namespace quillmark
