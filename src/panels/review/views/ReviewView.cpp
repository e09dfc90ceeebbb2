#include "panels/review/views/ReviewView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/EnumTable.h"
#include "base/Localization.h"
#include "base/Trace.h"
#include "widgets/Look.h"
#include "widgets/QtText.h"

namespace quillmark {

namespace {

constexpr int widestPicker = 400;
constexpr int widestProvider = 100;
constexpr int widestModel = 130;
// Together with a text's start height these add up to the panel's start height.
constexpr int topPadding = 12;
constexpr int pickerGap = 8;
constexpr int textGap = 6;  ///< below the text
constexpr int barHeight = 50;

/// For the trace.
struct ShownMark {
  ReviewContent key;
  trace::Stage stage;
};
constexpr EnumTable<ShownMark> shownMarks{{
    {ReviewContent::text, trace::reviewShowsText},
    {ReviewContent::styled, trace::reviewShowsStyled},
    {ReviewContent::lineByLine, trace::reviewShowsLines},
    {ReviewContent::wordByWord, trace::reviewShowsWords},
    {ReviewContent::error, trace::reviewShowsError},
    {ReviewContent::loading, trace::reviewShowsLoading},
}};

QStringList modeTitles() {
  QStringList titles;
  for (const auto mode : allCases<ReviewViewMode>()) {
    titles += qt(title(mode));
  }
  return titles;
}

}  // namespace

ReviewView::ReviewView(ReviewPanelVM& session, ReviewViewState& state, Pasteboard& pasteboard, QWidget* parent)
    : QWidget(parent),
      session_(session),
      state_(state),
      picker_(modeTitles()),
      pages_(&content_),
      result_(session.text(), session.isStreaming()),
      lines_(state.lines()),
      words_(state.words()),
      provider_(qt(quillmark::tr("Provider")), [this] { return providerItems(); }),
      model_(qt(quillmark::tr("Model")), [this] { return modelItems(); }),
      reloading_(nullptr, look::targetHeight / 2) {
  setWindowTitle(qt(quillmark::tr("Review")));
  picker_.setAccessibleName(qt(quillmark::tr("View")));
  picker_.setMaximumWidth(widestPicker);
  picker_.onChoice = [this](int index) { state_.setViewMode(static_cast<ReviewViewMode>(index)); };

  for (QWidget* page : std::initializer_list<QWidget*>{&result_, &lines_, &words_, &error_, &waiting_}) {
    pages_.addWidget(page);
  }
  const auto copySelected = [&pasteboard](const QString& selected) {
    pasteboard.clearContents();
    pasteboard.setString(selected.toStdString());
  };
  for (TextColumn* column : std::initializer_list<TextColumn*>{&result_, &lines_, &error_.message()}) {
    column->copyRequested = copySelected;
  }
  result_.measured = [this] { measure(); };
  makeBar(bar_);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, topPadding, 0, 0);
  column->setSpacing(0);
  auto* const top = new QHBoxLayout(&head_);
  top->setContentsMargins(0, 0, 0, pickerGap);
  top->addStretch();
  top->addWidget(&picker_, 1);
  top->addStretch();
  column->addWidget(&head_);
  auto* const middle = new QHBoxLayout;
  // The edges of the panel are left free for dragging.
  middle->setContentsMargins(8, 0, 8, textGap);
  middle->addWidget(&content_);
  column->addLayout(middle, 1);
  column->addWidget(&bar_);

  QWidget* before = &picker_;
  for (QWidget* control : std::initializer_list<QWidget*>{&result_, &lines_, &words_, &error_, &provider_, &model_,
                                                          &reload_, &discard_, &apply_, &copy_}) {
    setTabOrder(before, control);
    before = control;
  }

  connections_ += state_.contentChanged.connect([this] { showContent(); });
  connections_ += state_.sizeChanged.connect([this] { fit(); });
  connections_ += session_.menusChanged.connect([this] { showMenus(); });
  connections_ += session_.loading().observe([this](bool) { showState(); });
  connections_ += session_.hasError().observe([this](bool) { showState(); });
  // Copying is possible from the first piece of an answer on.
  connections_ += session_.text().changed.connect(
      [this](std::size_t) { copy_.setEnabled(session_.canApply(ActionBehavior::copyToClipboard)); });
  connections_ += session_.errorMessage().bind([this](const std::string& message) { error_.setMessage(message); });
  connections_ += session_.isReviewOpen().observe([this](bool open) {
    if (open) {
      pages_.currentWidget()->setFocus();
    }
  });
  session_.updateAvailableModels();
  showMenus();
  showState();
  showContent();
}

std::vector<DropDown::Item> ReviewView::providerItems() {
  std::vector<DropDown::Item> items;
  for (const auto& item : session_.providerItems()) {
    items.push_back({qt(item.title), session_.selectedProvider().get() == item.id,
                     [this, id = item.id] { session_.changeProvider(id); }});
  }
  return items;
}

std::vector<DropDown::Item> ReviewView::modelItems() {
  std::vector<DropDown::Item> items;
  for (const auto& item : session_.modelItems()) {
    items.push_back({qt(item.title), item.identifier && session_.selectedModel().get() == item.identifier, {}});
    if (item.identifier) {
      items.back().choose = [this, identifier = *item.identifier] { session_.changeModel(identifier); };
    }
  }
  return items;
}

void ReviewView::makeBar(QWidget& bar) {
  bar.setFixedHeight(barHeight);
  auto* const row = new QHBoxLayout(&bar);
  // Aligns the titles of the menus with the text.
  constexpr int side = look::windowPadding - Button::ringRoom - 4;
  row->setContentsMargins(side, 0, side, 0);
  row->setSpacing(0);
  provider_.setMaximumWidth(widestProvider + 2 * Button::ringRoom);
  model_.setMaximumWidth(widestModel + 2 * Button::ringRoom);
  for (DropDown* menu : {&provider_, &model_}) {
    menu->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    menu->setTint(QPalette::PlaceholderText);
    row->addWidget(menu);
  }
  row->addWidget(&reload_);
  row->addStretch(1);
  row->addWidget(&discard_);
  row->addWidget(&apply_);
  row->addWidget(&copy_);

  discard_.describe(qt(quillmark::tr("Discard")), "xmark", qt(quillmark::tr("Discard changes (esc)")));
  copy_.setTint(QPalette::PlaceholderText);
  reload_.setTint(QPalette::PlaceholderText);
  auto* const centred = new QHBoxLayout(&reload_);
  centred->setContentsMargins({});
  centred->addWidget(&reloading_, 0, Qt::AlignCenter);
  reloading_.setAttribute(Qt::WA_TransparentForMouseEvents);

  QObject::connect(&reload_, &QPushButton::clicked, this, [this] { session_.reload(); });
  QObject::connect(&discard_, &QPushButton::clicked, this, [this] { session_.discard(); });
  QObject::connect(&apply_, &QPushButton::clicked, this, [this] { session_.apply(ActionBehavior::replaceSelection); });
  QObject::connect(&copy_, &QPushButton::clicked, this, [this] { session_.apply(ActionBehavior::copyToClipboard); });
}

void ReviewView::showContent() {
  head_.setVisible(state_.offersComparison());
  picker_.choose(static_cast<int>(state_.viewMode()));
  QWidget* page = nullptr;
  switch (state_.content()) {
    case ReviewContent::text:
    case ReviewContent::styled:
      result_.setStyled(state_.content() == ReviewContent::styled);
      page = &result_;
      break;
    case ReviewContent::lineByLine:
      page = &lines_;
      break;
    case ReviewContent::wordByWord:
      page = &words_;
      break;
    case ReviewContent::error:
      page = &error_;
      break;
    case ReviewContent::loading:
      page = &waiting_;
      break;
  }
  const bool hadKeyboard = content_.isAncestorOf(focusWidget());
  pages_.setCurrentWidget(page);
  if (hadKeyboard) {
    page->setFocus();
  }
  trace::mark(shownMarks[state_.content()].stage);
  fit();
}

void ReviewView::showMenus() {
  provider_.setLabel(qt(session_.providerLabel()));
  model_.setLabel(qt(session_.modelLabel()));
  model_.setEnabled(!session_.availableModels()->empty());
}

void ReviewView::showState() {
  const bool failed = session_.hasError().get();
  const bool loading = session_.loading().get();
  reload_.describe({}, loading ? "" : "arrow.2.squarepath", qt(quillmark::tr("Run again ({})", "Ctrl+R")));
  reloading_.setVisible(loading);
  apply_.describe(qt(quillmark::tr("Apply")), "checkmark",
                  qt(failed ? quillmark::tr("Cannot apply due to error") : quillmark::tr("Apply changes (return)")));
  apply_.setEnabled(session_.canApply(ActionBehavior::replaceSelection));
  copy_.describe(
      {}, "document.on.document",
      qt(failed ? quillmark::tr("Cannot copy due to error") : quillmark::tr("Copy to clipboard ({})", "Ctrl+C")));
  copy_.setEnabled(session_.canApply(ActionBehavior::copyToClipboard));
}

void ReviewView::measure() {
  if (!session_.isReviewOpen().get()) {
    return;  // the next session starts with its own size
  }
  const QSizeF size = result_.textSize();
  state_.measured({size.width(), size.height()});
}

void ReviewView::fit() {
  const int aboveText = state_.offersComparison() ? picker_.sizeHint().height() + pickerGap : 0;
  const Size least = state_.minimumSize();
  const Size wanted = state_.panelSize(topPadding + aboveText + textGap + barHeight);
  auto& panel = session_.panel();
  setMinimumSize(std::min(int(least.width), int(wanted.width)), std::min(int(least.height), int(wanted.height)));
  if (QWidget* const frame = window(); frame != this && frame->layout()) {
    // The limits for resizing by the user. The frame's margins are its shadow.
    const QMargins shadow = frame->layout()->contentsMargins();
    frame->setMinimumSize(minimumSize().grownBy(shadow));
    if (const auto most = state_.maxHeight()) {
      frame->setMaximumHeight(QSize(0, std::max(int(*most), minimumHeight())).grownBy(shadow).height());
    }
  }
  if (wanted != panel.contentSize()) {
    panel.setContentSize(wanted);
  }
}

bool ReviewView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();  // the keys below are the panel's
  }
  return QWidget::event(event);
}

bool ReviewView::focusNextPrevChild(bool next) {
  // Tab is for the modes; the focus goes on by Shift+Tab.
  return !(next && state_.offersComparison()) && QWidget::focusNextPrevChild(next);
}

bool ReviewView::moveInBar(bool forward) {
  const std::array<QWidget*, 6> controls{&provider_, &model_, &reload_, &discard_, &apply_, &copy_};
  auto at = std::ranges::find(controls, focusWidget());
  if (at == controls.end()) {
    return false;
  }
  do {
    if (at == (forward ? controls.end() - 1 : controls.begin())) {
      return true;
    }
    at += forward ? 1 : -1;
  } while (!(*at)->isEnabled());
  (*at)->setFocus(Qt::TabFocusReason);
  return true;
}

void ReviewView::keyPressEvent(QKeyEvent* event) {
  const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const auto is = [&](Qt::Key key, Qt::KeyboardModifiers with = {}) {
    return event->key() == key && modifiers == with;
  };
  if (is(Qt::Key_Tab)) {
    state_.cycle();
  } else if (is(Qt::Key_Escape)) {
    session_.discard();
  } else if (is(Qt::Key_Return) || is(Qt::Key_Enter)) {
    session_.apply(ActionBehavior::replaceSelection);
  } else if (is(Qt::Key_C, Qt::ControlModifier)) {
    session_.apply(ActionBehavior::copyToClipboard);
  } else if (is(Qt::Key_R, Qt::ControlModifier)) {
    session_.reload();
  } else if (is(Qt::Key_Left) || is(Qt::Key_Right)) {
    moveInBar((event->key() == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight));
  } else {
    QWidget::keyPressEvent(event);
  }
}

void ReviewView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const double hairline = 1 / devicePixelRatioF();
  look::drawHairline(painter, QRectF(bar_.geometry()).adjusted(hairline, 0, -hairline, 0), palette());
}

}  // namespace quillmark
