#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include "desktop_qt/WaitFor.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/views/ShortcutRecorderView.h"

namespace quillmark {
namespace {

/// A dialog with a field before and after the recorder.
struct RecorderView : testing::Test {
  RecorderView() {
    layout.addWidget(&before);
    layout.addWidget(&view);
    layout.addWidget(&after);
    dialog.show();
    dialog.activateWindow();
    EXPECT_TRUE(waitFor([&] { return dialog.isActiveWindow(); }));
    field->setFocus();
  }

  /// As the window system delivers it: first the question whether it is a shortcut.
  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, quint32 scanCode = 0) {
    for (const auto type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, modifiers, scanCode, 0, 0);
      if (QWidget* const widget = QApplication::focusWidget()) {
        QApplication::sendEvent(widget, &event);
      }
    }
  }
  std::string text() const { return field->text().toStdString(); }

  SimulatedDesktop desktop;
  AlertHandler alertHandler{desktop.queue, desktop.alerts};
  GlobalShortcuts shortcuts{desktop.defaults, desktop.hotKeys};
  QDialog dialog;
  QVBoxLayout layout{&dialog};
  QLineEdit before;
  ShortcutRecorderView view{{shortcuts, desktop.hotKeys, alertHandler, [](const auto&) { return std::nullopt; },
                             [](const std::string& name) { return name; }},
                            "commandMenu"};
  QLineEdit after;
  QPushButton* field = view.findChild<QPushButton*>();
  QToolButton* clear = view.findChild<QToolButton*>();
};

TEST_F(RecorderView, recordsAndClearsByKeyboardAlone) {
  EXPECT_FALSE(clear->isVisible());
  press(Qt::Key_Space, {}, 0x31);
  EXPECT_EQ(text(), "Press Shortcut");
  press(Qt::Key_Control, Qt::ControlModifier, 0x3B);
  press(Qt::Key_Alt, Qt::ControlModifier | Qt::AltModifier, 0x3A);
  EXPECT_EQ(text(), "Press Shortcut") << "a modifier alone is no combination";
  press(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier, 0x28);
  EXPECT_EQ(text(), "Ctrl+Alt+key 40");
  ASSERT_TRUE(clear->isVisible());

  press(Qt::Key_Tab);
  EXPECT_TRUE(clear->hasFocus());
  press(Qt::Key_Space);
  EXPECT_EQ(text(), "Record Shortcut");
  EXPECT_TRUE(field->hasFocus()) << "the focus stays at the control";
}

TEST_F(RecorderView, endsWhenTheFocusLeavesOrTheFieldIsChosenAgain) {
  press(Qt::Key_Return);
  EXPECT_EQ(text(), "Press Shortcut");
  press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(before.hasFocus());
  EXPECT_EQ(text(), "Record Shortcut");
  field->click();
  field->click();
  EXPECT_EQ(text(), "Record Shortcut");
}

TEST_F(RecorderView, takesKeysThatTheWindowUsesOnlyWhileItWaits) {
  int quits = 0;
  QAction quit(&dialog);
  quit.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
  QObject::connect(&quit, &QAction::triggered, [&] { ++quits; });
  dialog.addAction(&quit);
  field->click();
  press(Qt::Key_Escape, {}, 0x35);
  EXPECT_TRUE(dialog.isVisible()) << "Escape ends the recording, not the dialog";
  EXPECT_EQ(text(), "Record Shortcut");
  field->click();
  press(Qt::Key_Q, Qt::ControlModifier, 0x0C);
  EXPECT_EQ(quits, 0);
  EXPECT_EQ(text(), "Ctrl+key 12");
  press(Qt::Key_Escape, {}, 0x35);
  EXPECT_FALSE(dialog.isVisible());
}

}  // namespace
}  // namespace quillmark
