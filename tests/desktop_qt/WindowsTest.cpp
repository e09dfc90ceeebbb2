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
#include "platform/desktop/WindowPanel.h"

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

struct PresentedAlert : testing::Test {
  QDialog* present(const std::string& message) {
    alerts.present({AlertStyle::warning, "OpenAI Issue", message, {"Close"}}, [this](std::size_t) { ++closed; });
    return standingAlert();
  }
  QtAlerts alerts;
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

TEST(LoadingWindow, movesOnlyWhileItIsShown) {
  LoadingWindow window;
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

TEST(WindowPanel, tellsWhenTheUserClosesItAndCanBeShownAgain) {
  auto* const content = new QPushButton("Go on");
  WindowPanel window("Welcome", *content);
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
