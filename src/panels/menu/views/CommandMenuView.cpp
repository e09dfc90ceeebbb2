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
#include "widgets/QtText.h"
#include "widgets/Symbols.h"
#include "widgets/TextBlocks.h"
#include "widgets/TextColumn.h"

namespace quillmark {

namespace {

constexpr int menuWidth = 420;
constexpr int fieldHeight = 44;
constexpr int listMargin = 8;
/// Half of the ninth row is visible, as a hint that there is more.
constexpr int listHeight = 8 * CommandItemView::height + CommandItemView::height / 2 + listMargin;
constexpr int iconSide = 20;

/// The keys that the menu handles, by position.
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
      case CommandItemView::lit:
        return state_.isSelected(command) || state_.hoveredIndex().get() == row;
      case CommandItemView::runsByReturn:
        return state_.commandOfReturn() == &command;
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

/// A card in place of the list that shows the user's own task.
class CommandMenuView::Task : public QWidget {
 public:
  explicit Task(QWidget* parent) : QWidget(parent) {
    setRole(*this, QAccessible::StaticText);
    setAccessibleName(qt(quillmark::tr("Ready to execute:")));
    column_.setAccessibleName(accessibleName());
    column_.measured = [this] { place(); };
    column_.styleChanged = [this] { setTask(task_); };
  }

  void setTask(const std::string& task) {
    task_ = task;
    column_.replaceFrom(0, blocks::plain(task_, palette()), true);
  }

 protected:
  void resizeEvent(QResizeEvent*) override { place(); }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QColor accent = palette().color(QPalette::Highlight);
    const QRect card = cardRect();
    look::fillRounded(painter, card, look::fieldRadius, look::withOpacity(accent, 0.1));
    const auto mirrored = [this](const QRect& box) { return QStyle::visualRect(layoutDirection(), rect(), box); };
    const QRect sign(card.left() + inset, card.top() + inset, iconSide, iconSide);
    symbols::draw(painter, mirrored(sign).topLeft(), iconSide, "sparkles", accent);
    painter.setFont(look::font(13, QFont::Medium));
    painter.setPen(look::secondary(palette()));
    const QRect title(sign.right() + 9, sign.top(), card.right() - sign.right() - 20, sign.height());
    painter.drawText(mirrored(title), look::leading(layoutDirection()), accessibleName());
  }

 private:
  static constexpr int titleSpace = 40;
  static constexpr int inset = 12;

  QRect cardRect() const {
    const int needed = titleSpace + int(std::ceil(column_.heightForText())) + inset;
    return {inset, inset, width() - 2 * inset, std::min(needed, height() - 2 * inset)};
  }

  void place() {
    column_.setGeometry(cardRect().adjusted(inset, titleSpace, -inset, -inset));
    update();
  }

  std::string task_;
  TextColumn column_{this};
};

CommandMenuView::CommandMenuView(CommandPanelViewModel& viewModel, QWidget* parent)
    : QWidget(parent),
      viewModel_(viewModel),
      state_(viewModel.view()),
      rows_(std::make_unique<Rows>(state_)),
      pages_(&content_),
      nothing_(qt(quillmark::tr("No commands found"))),
      noTask_(qt(quillmark::tr("Type your task and press Enter to execute")), "sparkles"),
      task_(new Task(&content_)) {
  setFixedWidth(CommandMenuView::sizeHint().width());
  setWindowTitle(qt(quillmark::tr("Command Menu")));
  setFocusProxy(&field_);

  field_.setFont(look::font(15));
  field_.installEventFilter(this);
  modeButton_.setFocusPolicy(Qt::NoFocus);
  modeButton_.setTint(QPalette::PlaceholderText);
  head_.setFixedHeight(fieldHeight);
  auto* const row = new QHBoxLayout(&head_);
  row->setContentsMargins({});
  row->setSpacing(0);
  row->addSpacing(look::windowPadding + iconSide + 8);
  row->addWidget(&field_);
  row->addWidget(&modeButton_);
  row->addSpacing(10 - Button::ringRoom);

  list_.setAccessibleName(qt(quillmark::tr("Commands")));
  styleList(list_);
  list_.setFocusPolicy(Qt::NoFocus);
  list_.setItemDelegate(new CommandItemView(&list_));
  list_.setSelectionMode(QAbstractItemView::NoSelection);
  list_.verticalScrollBar()->setSingleStep(CommandItemView::height / 2);
  list_.viewport()->installEventFilter(this);
  list_.setModel(rows_.get());
  for (QWidget* page : std::initializer_list<QWidget*>{&list_, &nothing_, &noTask_, task_}) {
    pages_.addWidget(page);
  }

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(&head_);
  auto* const inset = new QHBoxLayout;
  inset->setContentsMargins(listMargin, listMargin, listMargin, 0);
  inset->addWidget(&content_);
  column->addLayout(inset);

  QObject::connect(&field_, &QLineEdit::textChanged, this, [this](const QString& typed) {
    if (auto searched = typed.toStdString(); searched != viewModel_.searchText().get()) {
      viewModel_.setSearchText(std::move(searched));
    }
  });
  QObject::connect(&modeButton_, &QPushButton::clicked, this, [this] { viewModel_.toggleMode(); });
  QObject::connect(&list_, &QListView::clicked, this,
                   [this](const QModelIndex& index) { state_.click(std::size_t(index.row())); });

  connections_ += viewModel_.searchText().observe([this](const std::string& searched) {
    if (const QString shown = qt(searched); shown != field_.text()) {
      field_.setText(shown);
    }
    if (!isFilter()) {
      showTask();
    }
  });
  connections_ += viewModel_.currentMode().observe([this](CommandMenuMode) { showMode(); });
  connections_ += viewModel_.isCommandOpen().observe([this](bool open) {
    if (open) {
      lastPointer_ = QCursor::pos();  // opening under the pointer does not count as entering
      list_.scrollToTop();
      field_.setFocus();
    }
  });
  connections_ += state_.visibleCommandsChanged.connect([this] { showRows(); });
  connections_ += state_.selectedIndex().observe([this](const auto&) { showSelection(); });
  connections_ += state_.hoveredIndex().observe([this](const auto&) { list_.viewport()->update(); });
  showMode();
}

CommandMenuView::~CommandMenuView() {
  // While they are destroyed they would still send events here.
  list_.viewport()->removeEventFilter(this);
  field_.removeEventFilter(this);
  list_.setModel(nullptr);
}

QSize CommandMenuView::sizeHint() const { return {menuWidth, fieldHeight + 1 + listHeight}; }

bool CommandMenuView::isFilter() const { return viewModel_.currentMode().get() == CommandMenuMode::filter; }

void CommandMenuView::showMode() {
  const QString placeholder =
      qt(isFilter() ? quillmark::tr("Search for Commands") : quillmark::tr("Describe your task..."));
  field_.setPlaceholderText(placeholder);
  field_.setAccessibleName(placeholder);
  modeButton_.describe(
      {}, isFilter() ? "pencil.and.scribble" : "sparkles",
      qt(isFilter() ? quillmark::tr("Switch to Freestyle mode (Tab)") : quillmark::tr("Switch to Filter mode (Tab)")));
  showRows();
  update();
}

void CommandMenuView::showRows() {
  rows_->refill();
  list_.scrollToTop();
  if (!isFilter()) {
    showTask();
  } else if (state_.visibleCommands().empty()) {
    pages_.setCurrentWidget(&nothing_);
  } else {
    pages_.setCurrentWidget(&list_);
  }
}

void CommandMenuView::showTask() {
  const auto& task = viewModel_.searchText().get();
  task_->setTask(task);
  pages_.setCurrentWidget(task.empty() ? static_cast<QWidget*>(&noTask_) : task_);
}

void CommandMenuView::showSelection() {
  const auto selected = state_.selectedIndex().get();
  const QModelIndex index = selected ? rows_->index(int(*selected), 0) : QModelIndex();
  list_.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  list_.scrollTo(index);
  list_.viewport()->update();
}

bool CommandMenuView::eventFilter(QObject* object, QEvent* event) {
  if (object == &field_ && event->type() == QEvent::KeyPress) {
    const auto& press = static_cast<const QKeyEvent&>(*event);
    const auto modifiers = press.modifiers() & ~Qt::KeypadModifier;
    if (press.key() == Qt::Key_Escape) {
      viewModel_.cancel();
    } else if (const auto code = keyCodeOf(press.key()); code && !modifiers) {
      state_.keyDown(*code);
    }
    // The field gets the key as well.
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
    return;  // scrolling under a resting pointer does not count as entering
  }
  lastPointer_ = global;
  const QModelIndex index = list_.indexAt(inList);
  state_.hover(index.isValid() ? std::optional(std::size_t(index.row())) : std::nullopt);
}

void CommandMenuView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect icon(look::windowPadding, (fieldHeight - iconSide) / 2, iconSide, iconSide);
  symbols::draw(painter, QStyle::visualRect(layoutDirection(), QRect(0, 0, width(), fieldHeight), icon).topLeft(),
                iconSide, isFilter() ? "sparkle.magnifyingglass" : "pencil.and.scribble", look::secondary(palette()));
  const double hairline = 1 / devicePixelRatioF();
  look::drawHairline(painter, QRectF(hairline, fieldHeight, width() - 2 * hairline, 1), palette());
}

}  // namespace quillmark
