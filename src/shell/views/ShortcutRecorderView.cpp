#include "shell/views/ShortcutRecorderView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <algorithm>
#include <iterator>
#include <utility>

#include "base/Localization.h"
#include "widgets/QtText.h"
#include "widgets/Symbols.h"

namespace quillmark {
namespace {

constexpr int rowHeight = 28;
constexpr int gap = 4;

bool isModifier(int key) {
  constexpr int modifiers[] = {Qt::Key_Shift,      Qt::Key_Control, Qt::Key_Meta,     Qt::Key_Alt,
                               Qt::Key_AltGr,      Qt::Key_Super_L, Qt::Key_Super_R,  Qt::Key_Hyper_L,
                               Qt::Key_Hyper_R,    Qt::Key_NumLock, Qt::Key_CapsLock, Qt::Key_ScrollLock,
                               Qt::Key_Mode_switch};
  return std::ranges::find(modifiers, key) != std::end(modifiers);
}

int carbonModifiers(Qt::KeyboardModifiers modifiers) {
  const std::pair<Qt::KeyboardModifier, int> table[] = {{Qt::ControlModifier, KeyCombination::control},
                                                        {Qt::AltModifier, KeyCombination::option},
                                                        {Qt::ShiftModifier, KeyCombination::shift},
                                                        {Qt::MetaModifier, KeyCombination::command}};
  int result = 0;
  for (const auto& [modifier, flag] : table) {
    result |= modifiers.testFlag(modifier) ? flag : 0;
  }
  return result;
}

}  // namespace

ShortcutRecorderView::Field::Field(ShortcutRecorder& recorder, QWidget* parent)
    : QPushButton(parent), recorder_(recorder) {
  setAccessibleName(qt(quillmark::tr("Keyboard Shortcut")));
  setAutoDefault(false);
  setMinimumHeight(rowHeight);
}

bool ShortcutRecorderView::Field::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && recorder_.isRecording()) {
    event->accept();  // not a shortcut of the window: the key arrives as a key press
    return true;
  }
  return QPushButton::event(event);
}

void ShortcutRecorderView::Field::keyPressEvent(QKeyEvent* event) {
  if (!recorder_.isRecording()) {
    // A button in a dialog passes Return to the default button; this one handles it.
    const bool begins = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    begins ? click() : QPushButton::keyPressEvent(event);
    return;
  }
  if (!event->isAutoRepeat() && !isModifier(event->key())) {
    recorder_.keyPressed(event->nativeScanCode(), carbonModifiers(event->modifiers()));
  }
}

void ShortcutRecorderView::Field::focusOutEvent(QFocusEvent* event) {
  recorder_.end();
  QPushButton::focusOutEvent(event);
}

ShortcutRecorderView::ShortcutRecorderView(ShortcutRecorder::Collaborators collaborators, std::string name,
                                           QWidget* parent)
    : QWidget(parent), recorder_(std::move(collaborators), std::move(name)) {
  const QString clear = qt(quillmark::tr("Clear Shortcut"));
  clear_.setIcon(symbols::icon("xmark"));
  clear_.setToolTip(clear);
  clear_.setAccessibleName(clear);
  clear_.setAutoRaise(true);
  clear_.setFixedSize(rowHeight, rowHeight);
  clear_.setFocusPolicy(Qt::TabFocus);
  QSizePolicy policy = clear_.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  clear_.setSizePolicy(policy);

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins({});
  row->setSpacing(gap);
  row->addWidget(&field_, 1);
  row->addWidget(&clear_);

  QObject::connect(&field_, &QPushButton::clicked, this,
                   [this] { recorder_.isRecording() ? recorder_.end() : recorder_.begin(); });
  QObject::connect(&clear_, &QToolButton::clicked, this, [this] {
    field_.setFocus();  // before the button is hidden
    recorder_.clear();
  });
  changes_ = recorder_.changed.connect([this] { refresh(); });
  refresh();
}

void ShortcutRecorderView::refresh() {
  field_.setText(qt(recorder_.text()));
  field_.setDown(recorder_.isRecording());
  // Never narrower than before, so that a click moves nothing.
  field_.setMinimumWidth(std::max(field_.minimumWidth(), field_.sizeHint().width()));
  clear_.setVisible(recorder_.hasShortcut());
}

}  // namespace quillmark
