#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QScrollBar>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Log.h"
#include "panels/menu/views/CommandMenuView.h"
#include "panels/review/views/ReviewView.h"
#include "platform/desktop/QtPanelWindow.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/QuillmarkApp.h"
#include "widgets/Look.h"
#include "widgets/TextBlocks.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

QColor over(const QColor& ground, const QColor& colour, double opacity) {
  const auto mix = [opacity](float below, float above) { return float(below * (1 - opacity) + above * opacity); };
  return QColor::fromRgbF(mix(ground.redF(), colour.redF()), mix(ground.greenF(), colour.greenF()),
                          mix(ground.blueF(), colour.blueF()));
}

TEST(Look, coloursCanBeReadInBothSchemes) {
  for (const auto scheme : {look::Scheme::light, look::Scheme::dark}) {
    const QPalette palette = look::palette(scheme);
    const QColor panel = palette.color(QPalette::Window);
    EXPECT_EQ(look::scheme(palette), scheme);
    for (const QColor& ground : {panel, look::card(palette)}) {
      EXPECT_GE(look::contrast(palette.color(QPalette::WindowText), ground), 7);
      EXPECT_GE(look::contrast(look::secondary(palette), ground), 4.5);
    }
    for (const QColor& colour : {look::added(palette), look::removed(palette), look::changed(palette)}) {
      for (const double opacity : {0.0, 0.05, 0.1}) {
        EXPECT_GE(look::contrast(colour, over(panel, colour, opacity)), 4.5) << colour.name().toStdString();
      }
    }
    for (const QColor& accent :
         {QColor(0x2B66D9), QColor(0x86AEFF), QColor(0xF6D32D), QColor(0x7A1FA2), QColor(0x3584E4)}) {
      const QPalette with = look::palette(scheme, accent);
      EXPECT_GE(look::contrast(with.color(QPalette::HighlightedText), accent), 3.9) << accent.name().toStdString();
    }
  }
}

struct Quiet {
  Quiet() {
    setLogSink([](std::string_view) {});
  }
  ~Quiet() { setLogSink({}); }
};

/// The real views in their windows, over a simulated desktop.
struct PanelViews : testing::Test {
  PanelViews() {
    desktop.defaults.set("templatesLastFetch",
                         std::chrono::duration<double>(desktop.queue.now().time_since_epoch()).count());
    reviewWindow.setContent(review);
    menuWindow.setContent(menu);
    menuWindow.setContentSize({double(menu.sizeHint().width()), double(menu.sizeHint().height())});
    settle();
  }
  void settle() {
    for (int i = 0; i < 3; ++i) {
      desktop.background.run();
      desktop.advance(150ms);
      QCoreApplication::sendPostedEvents();
      QCoreApplication::processEvents();
    }
  }
  void openReview(const std::string& selection) {
    session.setCommand(*app.promptStore().commandFor(ActionCase::fixGrammar));
    session.open("", selection);
    QApplication::setActiveWindow(&reviewWindow);
    session.loading.set(true);
    session.isStreaming.set(true);
    settle();
  }
  void answer(const std::string& text) {
    session.text.set(text);
    session.loading.set(false);
    session.isStreaming.set(false);
    settle();
  }
  static void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
    QWidget* const target = QApplication::focusWidget();
    ASSERT_NE(target, nullptr);
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &event);
  }

  Quiet quiet;
  SimulatedDesktop desktop;
  WindowHints hints;
  QtPanelWindow reviewWindow{hints, QtPanelWindow::Kind::panel, look::windowRadius};
  QtPanelWindow menuWindow{hints, QtPanelWindow::Kind::panel, look::windowRadius};
  QuillmarkApp app{desktop.platform(), {nullptr, reviewWindow, menuWindow}, {}};
  ReviewPanelVM& session = app.reviewPanel();
  ReviewViewState& state = app.reviewViewState();
  CommandMenuState& rows = app.commandPanel().view();
  ReviewView review{session, state, desktop.pasteboard};
  CommandMenuView menu{app.commandPanel()};
};

TEST_F(PanelViews, aStreamIsDrawnAsItWouldBeAtOnce) {
  std::mt19937 random(5);
  const std::vector<std::string> pieces{
      "# Title", "\n",    "\r\n", "a **bold** word ", "- item", "`code`", "1. one", "> said",
      "---",     "سلام ", "\n\n", "plain ",           "*",      "[a](b)"};
  for (const bool styled : {false, true}) {
    openReview("selection");
    state.setViewMode(styled ? ReviewViewMode::styled : ReviewViewMode::text);
    for (int round = 0; round < 30; ++round) {
      session.text.set("");
      for (int i = 0; i < 20; ++i) {
        session.text.append(pieces[random() % pieces.size()]);
        if (random() % 2 == 0) {
          QCoreApplication::sendPostedEvents();
        }
      }
      if (round % 2 == 0) {  // the final answer is another one than the stream
        std::string answer = session.text.get();
        answer.replace(answer.rfind(' ') + 1, std::string::npos, "\n- the end");
        session.text.set(answer);
      }
      QCoreApplication::sendPostedEvents();
      TypewriterText whole(session);
      whole.setStyled(styled);
      whole.resize(review.result().size());
      whole.show();
      EXPECT_EQ(review.result().allText(), whole.allText());
      EXPECT_EQ(review.result().textSize(), whole.textSize());
    }
  }
}

TEST_F(PanelViews, aTextThatGrowsFollowsItsEndOnlyWhileTheUserIsThere) {
  openReview("selection");
  auto& bar = *review.result().verticalScrollBar();
  const auto grow = [&] {
    for (int i = 0; i < 60; ++i) {
      session.text.append("line\n");
    }
    settle();
  };
  grow();
  EXPECT_GT(bar.maximum(), 0);
  EXPECT_EQ(bar.value(), bar.maximum());
  bar.setValue(40);
  grow();
  EXPECT_EQ(bar.value(), 40);
}

TEST(TextColumn, saysMarkersAndSignsAndFindsTheCharactersBehindThem) {
  TextColumn column;
  column.resize(300, 200);
  TextBlock numbered{.text = "first", .marker = "1"};
  TextBlock both{.text = "second", .lead = 50, .marker = "2", .sign = "Added:"};
  column.replaceFrom(0, {numbered, both});
  EXPECT_EQ(column.allText(), "1 first\n2 Added: second");
  for (const int offset : {2, 4, 17, 20}) {
    EXPECT_EQ(column.offsetAt(column.rectOfCharacter(offset).center() - QPointF(1, 0)), offset);
  }
}

TEST_F(PanelViews, theReviewIsWorkedByKeys) {
  const auto editor = desktop.openEditor("Editor", "teh cat");
  desktop.advance(1min);
  openReview("teh cat");
  press(Qt::Key_Return);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(session.isReviewOpen.get()) << "nothing to apply yet";
  answer("the cat");
  using enum ReviewViewMode;
  for (const auto mode : {styled, lineByLine, wordByWord, ReviewViewMode::text}) {
    press(Qt::Key_Tab);
    settle();
    EXPECT_EQ(state.viewMode(), mode);
  }
  review.result().selectAll();
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desktop.pasteboard.text, "the cat");
  EXPECT_TRUE(session.isReviewOpen.get()) << "a selection is copied, and nothing more";
  std::set<QWidget*> reached;
  for (int i = 0; i < 12; ++i) {
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    reached.insert(QApplication::focusWidget());
  }
  EXPECT_EQ(reached.size(), 8u) << "modes, text, two menus, reload, discard, apply, copy";
  press(Qt::Key_Return);
  EXPECT_FALSE(session.isReviewOpen.get());
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "the cat");

  openReview("teh cat");
  session.handleError("It did not work.");
  settle();
  press(Qt::Key_Return);
  EXPECT_TRUE(session.isReviewOpen.get());
  press(Qt::Key_Escape);
  EXPECT_FALSE(session.isReviewOpen.get());
}

TEST_F(PanelViews, aListOfChoicesLiesInsideThePanelAndKeepsItsKeys) {
  openReview("selection");
  answer("answer");
  review.modelMenu().setFocus();
  press(Qt::Key_Space);
  review.modelMenu().click();
  auto* const list = review.window()->findChild<QListWidget*>();
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(reviewWindow.rect().contains(list->geometry()));
  EXPECT_EQ(list->count(), int(session.modelItems().size()));
  press(Qt::Key_Escape);
  EXPECT_FALSE(review.modelMenu().isOpen());
  EXPECT_TRUE(session.isReviewOpen.get()) << "Escape closed the list, not the panel";

  press(Qt::Key_Down);
  press(Qt::Key_Down);
  const auto wanted = session.modelItems()[1].identifier;
  press(Qt::Key_Return);
  EXPECT_EQ(session.selectedModel.get(), wanted);
  EXPECT_TRUE(session.isReviewOpen.get());
  session.availableModels.set({});
  EXPECT_FALSE(review.modelMenu().isEnabled()) << "nothing to choose, whatever is selected";
}

TEST_F(PanelViews, theMenuTakesTypingKeysAndThePointer) {
  const auto editor = desktop.openEditor("Editor", "teh cat");
  desktop.advance(1min);
  const auto hoverAt = [&](QPoint inList, QPoint global) {
    QMouseEvent move(QEvent::MouseMove, inList, global, Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(menu.list().viewport(), &move);
  };
  app.commandPanel().togglePanel();
  QApplication::setActiveWindow(&menuWindow);
  settle();
  hoverAt({50, 100}, QCursor::pos());
  EXPECT_EQ(rows.selectedIndex.get(), 0u) << "a menu that opens under a resting pointer is not entered by it";
  press(Qt::Key_Down);
  EXPECT_EQ(rows.selectedIndex.get(), 1u);
  for (const char letter : std::string_view("short")) {
    press(letter, {}, QString(QLatin1Char(letter)));
  }
  EXPECT_EQ(menu.list().model()->rowCount(), 1);
  EXPECT_EQ(rows.selectedItem()->type.kind, ActionCase::makeShorter);
  hoverAt({50, 10}, QCursor::pos() + QPoint(1, 1));
  EXPECT_FALSE(rows.selectedIndex.get().has_value());
  EXPECT_EQ(rows.hoveredIndex.get(), 0u);
  press(Qt::Key_Tab);
  EXPECT_EQ(menu.field().text(), "");
  EXPECT_EQ(menu.field().placeholderText(), "Describe your task...");
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_TRUE(menuWindow.isVisible());
  desktop.advance(100ms);
  EXPECT_FALSE(menuWindow.isVisible());
  EXPECT_EQ(desktop.keyInjector.posted.size(), 4u);
}

}  // namespace
}  // namespace quillmark
