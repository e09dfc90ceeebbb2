#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>

#include <gtest/gtest.h>

#include "desktop_qt/WaitFor.h"
#include "panels/views/LoadingWindow.h"
#include "platform/desktop/QtAlerts.h"
#include "platform/desktop/QtMainQueue.h"
#include "platform/desktop/WindowPanel.h"
#include "platform/desktop/WindowSystem.h"
#include "shell/views/TaskBarEntry.h"

namespace quillmark {
namespace {

QDialog* standingAlert() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* dialog = dynamic_cast<QDialog*>(window); dialog && dialog->isVisible()) {
      return dialog;
    }
  }
  return nullptr;
}

void press(QWidget& widget, Qt::Key key) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
  }
}

/// Remembers what was brought to the front.
struct RememberingHints : WindowHints {
  void bringToFront(QWidget& window) override { inFront.push_back(&window); }
  std::vector<QWidget*> inFront;
};

struct PresentedAlert : testing::Test {
  QDialog* present(const std::string& message) {
    alerts.present({AlertStyle::warning, "OpenAI Issue", message, {"Close"}}, [this](std::size_t) { ++closed; });
    return standingAlert();
  }
  RememberingHints hints;
  QtPanelWindow panel{hints, QtPanelWindow::Kind::panel, 0};
  QtAlerts alerts{hints, {&panel}};
  int closed = 0;
};

TEST_F(PresentedAlert, callsBackOnceAndTellsWhichOfItsButtonsClosedIt) {
  const auto click = [](QDialog& alert, const QString& title) {
    for (auto* button : alert.findChildren<QPushButton*>()) {
      if (button->text() == title) {
        button->click();
      }
    }
  };
  const std::pair<std::function<void(QDialog&)>, std::size_t> ways[] = {
      {[](QDialog& alert) { press(alert, Qt::Key_Return); }, 0},
      {[&](QDialog& alert) { click(alert, "Skip"); }, 1},
      {[](QDialog& alert) { press(alert, Qt::Key_Escape); }, 2},
      {[](QDialog& alert) { alert.close(); }, 2},  // the window manager's way
  };
  for (const auto& [close, expected] : ways) {
    std::vector<std::size_t> chosen;
    alerts.present({AlertStyle::informational, "Update", "text", {"Get It", "Skip", "Later"}},
                   [&](std::size_t button) { chosen.push_back(button); });
    QDialog* const alert = standingAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(qobject_cast<QPushButton*>(alert->focusWidget())->text(), "Get It");
    EXPECT_TRUE(chosen.empty()) << "presenting never waits";
    close(*alert);
    alert->close();
    EXPECT_EQ(chosen, std::vector{expected});
    EXPECT_EQ(standingAlert(), nullptr);
  }
}

TEST_F(PresentedAlert, showsItsTextAsItIsAndStaysOnTheScreenWhateverItsLength) {
  std::string longMessage;
  for (int i = 0; i < 400; ++i) {
    longMessage += "The server said something that nobody will read to its end. ";
  }
  for (const std::string& message :
       {std::string("<b>500</b> &amp; more"), longMessage, std::string(3000, 'x'), std::string()}) {
    QDialog* const alert = present(message);
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->accessibleName(), "OpenAI Issue");
    const auto* const text = alert->findChild<QTextEdit*>();
    EXPECT_EQ(text != nullptr ? text->toPlainText().toStdString() : "", message);
    EXPECT_TRUE(alert->screen()->availableGeometry().contains(alert->frameGeometry())) << message.substr(0, 20);
    alert->close();
  }
}

TEST_F(PresentedAlert, mayPresentTheNextOneWhenItCloses) {
  alerts.present({AlertStyle::informational, "First", "", {"Close"}}, [this](std::size_t) { present("second"); });
  standingAlert()->close();
  ASSERT_NE(standingAlert(), nullptr);
  EXPECT_EQ(standingAlert()->accessibleName(), "OpenAI Issue");
  standingAlert()->close();
  EXPECT_EQ(closed, 1);
}

TEST_F(PresentedAlert, givesTheKeyboardBackToThePanelThatHadIt) {
  const auto closeOne = [this] {
    hints.inFront.clear();
    QDialog* const alert = present("It did not work.");
    EXPECT_EQ(hints.inFront, std::vector<QWidget*>{alert});
    alert->close();
    return hints.inFront.back() == &panel;
  };
  EXPECT_FALSE(closeOne());
  panel.makeKeyAndOrderFront();
  EXPECT_TRUE(closeOne()) << "also before the window system tells that the panel has it";
  hints.activeWindow.emit(panel.winId());
  EXPECT_TRUE(closeOne());
  hints.activeWindow.emit(0);
  EXPECT_FALSE(closeOne()) << "another window had it";
  panel.makeKeyAndOrderFront();
  panel.close();
  EXPECT_FALSE(closeOne());
}

TEST(TaskBarEntry, isMinimisedAgainWhenItIsChosen) {
  int chosen = 0;
  TaskBarEntry entry([&] { ++chosen; });
  EXPECT_FALSE(entry.isVisible());
  for (int round = 1; round <= 2; ++round) {
    entry.setShown(true);
    QCoreApplication::processEvents();
    EXPECT_TRUE(entry.isMinimized());
    EXPECT_EQ(chosen, round - 1) << "showing it is not choosing it";
    entry.showNormal();  // what a task bar does
    QCoreApplication::processEvents();
    EXPECT_TRUE(entry.isMinimized());
    EXPECT_EQ(chosen, round);
    entry.setShown(false);
    QCoreApplication::processEvents();
    EXPECT_FALSE(entry.isVisible());
  }
}

TEST(NoWindowSystem, isWhatASessionWithoutAnyGets) {
  ASSERT_TRUE(qunsetenv("DISPLAY"));
  QtMainQueue queue;
  const auto session = openWindowSystem(queue, "org.example.own");
  EXPECT_TRUE(session->problem());
  EXPECT_EQ(session->permissions().keyInjection(), Permission::unavailable);
  EXPECT_FALSE(session->keyInjector().createKeyboardEvent(KeyCode::c, true));
  EXPECT_FALSE(session->hotKeys().isAvailable({5, KeyCombination::control}));
  EXPECT_EQ(session->workspace().frontmostApplication(), nullptr);
  EXPECT_FALSE(session->screens().screens().empty()) << "panels have a place nevertheless";
  session->pasteboard().setString("text");
  bool read = false;
  session->pasteboard().readString([&](const auto& text) {
    read = true;
    EXPECT_FALSE(text);
  });
  EXPECT_TRUE(read);
}

TEST(LoadingWindow, movesOnlyWhileItIsShown) {
  WindowHints hints;
  LoadingWindow window(hints);
  EXPECT_FALSE(window.view().pulsing());
  for (int round = 0; round < 3; ++round) {
    window.moveTopLeft({30, 40});
    window.orderFront();
    EXPECT_TRUE(window.view().pulsing());
    EXPECT_EQ(window.size(), QSize(20, 20));
    window.close();
    EXPECT_FALSE(window.view().pulsing());
  }
}

TEST(WindowPanel, reportsWhenTheUserClosesItAndCanBeShownAgain) {
  auto* const content = new QPushButton("Go on");
  WindowHints hints;
  WindowPanel window(hints, "Welcome", *content);
  int closings = 0;
  window.closed = [&] { ++closings; };
  for (int round = 1; round <= 2; ++round) {
    window.makeKeyAndOrderFront();
    EXPECT_TRUE(content->isVisible());
    EXPECT_FALSE(window.windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    window.close();
    EXPECT_EQ(closings, round);
    EXPECT_FALSE(content->isVisible());
  }
}

}  // namespace
}  // namespace quillmark
