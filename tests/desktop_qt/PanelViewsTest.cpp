#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QMetaEnum>

#include <gtest/gtest.h>

#include "panels/menu/views/CommandItemView.h"
#include "panels/menu/views/CommandMenuView.h"
#include "panels/review/views/ReviewView.h"
#include "platform/desktop/QtPanelWindow.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/QuillmarkApp.h"
#include "widgets/Look.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

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
  /// A run whose answer has not arrived yet.
  void openReview(const std::string& selection) {
    const Command command = *app.promptStore().commandFor(ActionCase::fixGrammar);
    session.setCommand(command);
    session.open("", selection);
    session.execute(command, selection);
    request = &desktop.http.exchanges.back();
    QApplication::setActiveWindow(&reviewWindow);
    settle();
  }
  void stream(const std::string& piece) {
    request->bytes(piece);
    settle();
  }
  void end() {
    request->end();
    settle();
  }
  void answer(const std::string& text) {
    stream(text);
    end();
  }
  static void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
    QWidget* const target = QApplication::focusWidget();
    ASSERT_NE(target, nullptr);
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &event);
  }

  /// What assistive technology finds in a view: all in sight but nameless holders of others.
  static void find(const QAccessibleInterface& outer, const std::string& indent,
                   std::vector<std::pair<std::string, QAccessibleInterface*>>& found) {
    for (int i = 0; i < outer.childCount(); ++i) {
      QAccessibleInterface& object = *outer.child(i);
      if (object.state().invisible) {
        continue;
      }
      const bool isHolder = object.role() == QAccessible::Client && object.text(QAccessible::Name).isEmpty();
      if (!isHolder) {
        found.emplace_back(indent, &object);
      }
      find(object, isHolder ? indent : indent + "  ", found);
    }
  }
  /// A line for each: role 'name' states [text]: help
  static std::string said(QWidget& view) {
    std::vector<std::pair<std::string, QAccessibleInterface*>> found;
    find(*QAccessible::queryAccessibleInterface(&view), "", found);
    QString all = "\n";
    for (const auto& [indent, object] : found) {
      const auto state = object->state();
      const QString name = object->text(QAccessible::Name);
      const QString help = object->text(QAccessible::Description);
      all += QString::fromStdString(indent) + QMetaEnum::fromType<QAccessible::Role>().valueToKey(object->role());
      all += " '" + name + "'" + (state.checked ? " checked" : "") + (state.expanded ? " expanded" : "") +
             (state.focused ? " focused" : "") + (state.selected ? " selected" : "") +
             (state.disabled ? " disabled" : "");
      if (auto* const text = object->textInterface()) {
        all += " [" + text->text(0, text->characterCount()) + "]";
      }
      all += (help.isEmpty() || help == name ? "" : ": " + help) + "\n";
    }
    return all.toStdString();
  }
  static void pressByAssistant(QWidget& view, const std::string& name) {
    std::vector<std::pair<std::string, QAccessibleInterface*>> found;
    find(*QAccessible::queryAccessibleInterface(&view), "", found);
    const auto button = std::ranges::find_if(
        found, [&](const auto& each) { return each.second->text(QAccessible::Name).toStdString() == name; });
    ASSERT_NE(button, found.end());
    button->second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  }

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
  const SimulatedHttpSession::Exchange* request = nullptr;
};

TEST_F(PanelViews, theReviewTellsAssistantsWhatItShowsAndOffers) {
  std::string mode = "Text";
  const auto expect = [&](const std::string& content, const std::string& provider = "",
                          const std::string& apply = ": Apply changes (return)",
                          const std::string& copy = "'Copy to clipboard (Ctrl+C)'") {
    std::string lines = "\nGrouping 'View'\n";
    for (const std::string view : {"Text", "Styled", "Line by Line", "Word by Word"}) {
      lines += "  RadioButton '" + view + (view == mode ? "' checked\n" : "'\n");
    }
    lines += content + "ButtonMenu 'Provider: Quillmark'" + provider + ": Provider\nButtonMenu 'Model: gpt-4.1-mini'";
    lines += ": Model\nButton 'Run again (Ctrl+R)'\nButton 'Discard': Discard changes (esc)\nButton 'Apply'";
    EXPECT_TRUE(said(reviewWindow).starts_with(lines + apply + "\nButton " + copy + "\n"))
        << said(reviewWindow) << "expected: " << lines + apply + "\nButton " + copy;
  };
  const std::string applyIsOff = " disabled: Apply changes (return)";
  openReview("colour big sat");
  expect("StaticText 'Loading...' focused\n", "", applyIsOff, "'Copy to clipboard (Ctrl+C)' disabled");
  stream("color ");
  expect("EditableText 'Result' focused [color ]\n", "", applyIsOff);
  answer("sat here");
  expect("EditableText 'Result' focused [color sat here]\n");
  pressByAssistant(reviewWindow, "Provider: Quillmark");
  expect("EditableText 'Result' [color sat here]\n", " expanded");
  EXPECT_TRUE(
      said(reviewWindow).ends_with("List 'Provider' focused\n  ListItem 'Quillmark' checked focused selected\n"));
  press(Qt::Key_Escape);
  const std::string focus = " focused";
  pressByAssistant(reviewWindow, mode = "Line by Line");
  expect("EditableText 'Line by Line' [Calculating differences...]\n", focus);
  settle();
  expect("EditableText 'Line by Line' [1 Deleted: colour big sat\n2 Added: color sat here]\n", focus);
  pressByAssistant(reviewWindow, mode = "Word by Word");
  expect("List 'Word by Word': Calculating differences...\n", focus);
  settle();
  expect(
      "List 'Word by Word'\n  ListItem 'color (Changed from: colour)'\n  ListItem 'Deleted: big'\n  ListItem 'sat'\n  "
      "ListItem 'Added: here'\n",
      focus);
  pressByAssistant(reviewWindow, "Run again (Ctrl+R)");
  request = &desktop.http.exchanges.back();
  end();
  expect(
      "AlertMessage 'Unable to Complete Request'\n  EditableText 'Unable to Complete Request' [Failed to complete the "
      "request. The AI "
      "provider returned an empty response. Please try again.]\n",
      focus, " disabled: Cannot apply due to error", "'Cannot copy due to error' disabled");
  openReview("\n \n");
  answer(" \n");
  expect("List 'Word by Word' focused\n");
  state.setViewMode(ReviewViewMode::lineByLine);
  settle();
  mode = "Line by Line";
  expect("EditableText 'Line by Line' focused []\n");
}

TEST_F(PanelViews, theMenuTellsAssistantsWhatItShows) {
  const auto expect = [&](const std::string& placeholder, const std::string& mode, const std::string& content) {
    EXPECT_EQ(said(menuWindow), "\nEditableText '" + placeholder + "' focused [" +
                                    app.commandPanel().searchText().get() + "]\nButton '" + mode + "'\n" + content);
    EXPECT_EQ(menu.field().placeholderText().toStdString(), placeholder);
  };
  const auto type = [&](const char* text) { app.commandPanel().setSearchText(text); };
  app.commandPanel().togglePanel(InvocationSource::menuBar);
  QApplication::setActiveWindow(&menuWindow);
  type("make text");
  settle();
  const std::string list = "List 'Commands'\n  ListItem 'Make Text Longer'";
  expect("Search for Commands", "Switch to Freestyle mode (Tab)",
         list + " focused selected\n  ListItem 'Make Text Shorter'\n");
  press(Qt::Key_Down);
  expect("Search for Commands", "Switch to Freestyle mode (Tab)",
         list + "\n  ListItem 'Make Text Shorter' focused selected\n");
  type("xyzzy");
  expect("Search for Commands", "Switch to Freestyle mode (Tab)", "StaticText 'No commands found'\n");
  app.commandPanel().toggleMode();
  expect("Describe your task...", "Switch to Filter mode (Tab)",
         "StaticText 'Type your task and press Enter to execute'\n");
  type("Make it rhyme");
  expect("Describe your task...", "Switch to Filter mode (Tab)",
         "StaticText 'Ready to execute:'\n  EditableText 'Ready to execute:' [Make it rhyme]\n");
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
  press(Qt::Key_C, Qt::ControlModifier);
  stream("the ");
  press(Qt::Key_Return);
  EXPECT_TRUE(session.isReviewOpen().get()) << "nothing to apply yet";
  answer("cat");
  using enum ReviewViewMode;
  for (const auto mode : {styled, lineByLine, wordByWord, ReviewViewMode::text}) {
    press(Qt::Key_Tab);
    settle();
    EXPECT_EQ(state.viewMode(), mode);
  }
  review.result().selectAll();
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desktop.pasteboard.text, "the cat");
  EXPECT_TRUE(session.isReviewOpen().get()) << "a selection is copied, and nothing more";
  QStringList reached;
  for (int i = 0; i < 8; ++i) {
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    reached += QApplication::focusWidget()->accessibleName();
  }
  EXPECT_EQ(reached.join(", "),
            "Text, Copy to clipboard (Ctrl+C), Apply, Discard, Run again (Ctrl+R), Model: gpt-4.1-mini, Provider: "
            "Quillmark, Result");
  press(Qt::Key_Return);
  EXPECT_FALSE(session.isReviewOpen().get());
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "the cat");

  openReview("teh cat");
  end();
  press(Qt::Key_Return);
  EXPECT_TRUE(session.isReviewOpen().get());
  press(Qt::Key_Escape);
  EXPECT_FALSE(session.isReviewOpen().get());
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
  EXPECT_TRUE(session.isReviewOpen().get()) << "Escape closed the list, not the panel";

  press(Qt::Key_Down);
  press(Qt::Key_Down);
  const auto wanted = session.modelItems()[1].identifier;
  press(Qt::Key_Return);
  EXPECT_EQ(session.selectedModel().get(), wanted);
  EXPECT_TRUE(session.isReviewOpen().get());
  session.changeProvider(Uuid::random());
  EXPECT_FALSE(review.modelMenu().isEnabled()) << "nothing to choose, whatever is selected";
}

TEST_F(PanelViews, theMenuTakesTypingKeysAndThePointer) {
  const auto editor = desktop.openEditor("Editor", "teh cat");
  desktop.advance(1min);
  const auto hoverAt = [&](QPoint inList, QPoint global) {
    QMouseEvent move(QEvent::MouseMove, inList, global, Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(menu.list().viewport(), &move);
  };
  app.commandPanel().togglePanel(InvocationSource::menuBar);
  QApplication::setActiveWindow(&menuWindow);
  settle();
  hoverAt({50, 100}, QCursor::pos());
  EXPECT_EQ(rows.selectedIndex().get(), 0u) << "a menu that opens under a resting pointer is not entered by it";
  press(Qt::Key_Down);
  EXPECT_EQ(rows.selectedIndex().get(), 1u);
  for (const char letter : std::string_view("short")) {
    press(letter, {}, QString(QLatin1Char(letter)));
  }
  EXPECT_EQ(menu.list().model()->rowCount(), 1);
  EXPECT_EQ(rows.selectedItem()->type.kind, ActionCase::makeShorter);
  hoverAt({50, 10}, QCursor::pos() + QPoint(1, 1));
  EXPECT_FALSE(rows.selectedIndex().get().has_value());
  EXPECT_TRUE(menu.list().model()->index(0, 0).data(CommandItemView::runsByReturn).toBool());
  press(Qt::Key_Tab);
  EXPECT_EQ(menu.field().text(), "");
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_TRUE(menuWindow.isVisible());
  desktop.advance(100ms);
  EXPECT_FALSE(menuWindow.isVisible());
  EXPECT_EQ(desktop.keyInjector.posted.size(), 4u);
}

}  // namespace
}  // namespace quillmark
