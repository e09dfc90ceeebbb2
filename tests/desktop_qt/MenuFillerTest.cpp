#include <QMenu>

#include <gmock/gmock.h>

#include "desktop_qt/WaitFor.h"
#include "shell/views/MenuFiller.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using Kind = MenuItem::Kind;

MenuItem action(std::string title, std::function<void()> trigger = {}) {
  MenuItem item{.title = std::move(title), .symbol = "gear"};
  item.trigger = std::move(trigger);
  return item;
}

std::vector<std::string> texts(const QMenu& menu) {
  std::vector<std::string> all;
  for (const QAction* entry : menu.actions()) {
    all.push_back(entry->isSeparator() ? "-" : entry->text().toStdString());
  }
  return all;
}

TEST(Menu, showsTheItemsItIsGiven) {
  QMenu menu;
  MenuItem tones{.kind = Kind::submenu, .title = "Change tone", .symbol = "pencil.and.scribble"};
  tones.children = {action("Formal"), action("Calm")};
  MenuItem settings = action("Settings");
  settings.shortcut = "Ctrl+,";
  MenuItem off = action("Fix Grammar & Spelling");
  off.enabled = false;
  fillMenu(menu, {off, tones, {.kind = Kind::divider}, settings, {.kind = Kind::submenu, .title = "Translate"}});

  EXPECT_THAT(texts(menu), ElementsAre("Fix Grammar && Spelling", "Change tone", "-", "Settings", "Translate"));
  EXPECT_FALSE(menu.actions()[0]->isEnabled());
  EXPECT_THAT(texts(*menu.actions()[1]->menu()), ElementsAre("Formal", "Calm"));
  EXPECT_EQ(menu.actions()[3]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Comma));
  EXPECT_FALSE(menu.actions()[3]->icon().isNull());
  ASSERT_NE(menu.actions()[4]->menu(), nullptr) << "also without entries";
  EXPECT_TRUE(menu.actions()[4]->isEnabled());

  QMenu hosted;
  fillMenu(hosted, {action("To snake_case"), action("A & B & C")}, MenuPainter::host);
  // The toolkit turns the first ampersand into an underscore on the way to the host.
  EXPECT_THAT(texts(hosted), ElementsAre("To snake__case", "A && B & C"));
}

TEST(Menu, anEntryCanHaveHelpAndTheAccentColour) {
  QMenu menu;
  MenuItem item = action("Update");
  fillMenu(menu, {item, action("Quit")});
  const QAction* const entry = menu.actions()[0];
  const QImage plain = entry->icon().pixmap(20).toImage();
  item.isAccented = true;
  item.help = "A newer one";
  fillMenu(menu, {item, action("Quit")});
  EXPECT_EQ(menu.actions()[0], entry);
  EXPECT_NE(entry->icon().pixmap(20).toImage(), plain);
  EXPECT_EQ(entry->toolTip(), "A newer one");
  EXPECT_TRUE(menu.toolTipsVisible());
}

TEST(Menu, anOpenMenuGainsTheProgressRowWithoutLosingItsOtherEntries) {
  QMenu menu;
  const std::vector<MenuItem> idle = {action("Improve Text"), {.kind = Kind::divider}, action("Quit")};
  fillMenu(menu, idle);
  const QList<QAction*> before = menu.actions();

  std::vector<MenuItem> busy = idle;
  busy[0].enabled = false;
  busy.insert(busy.begin(), {{.kind = Kind::progress, .title = "Processing request..."}, {.kind = Kind::divider}});
  fillMenu(menu, busy);
  EXPECT_THAT(texts(menu), ElementsAre("Processing request...", "-", "Improve Text", "-", "Quit"));
  EXPECT_FALSE(menu.actions()[0]->isEnabled()) << "the row is there to be seen only";
  EXPECT_EQ(menu.actions()[2], before[0]);
  EXPECT_FALSE(before[0]->isEnabled());
  EXPECT_EQ(menu.actions()[4], before[2]);

  fillMenu(menu, idle);
  EXPECT_EQ(menu.actions(), before);
  EXPECT_TRUE(before[0]->isEnabled());
}

TEST(Menu, anEntryRunsWhatTheLatestItemSays) {
  QMenu menu;
  std::string ran;
  fillMenu(menu, {action("Improve Text", [&] { ran += "old"; })});
  fillMenu(menu, {action("Improve Text", [&] { ran += "new"; })});
  menu.actions()[0]->trigger();
  EXPECT_EQ(ran, "") << "not before the menu has let go of the pointer and the keyboard";
  ASSERT_TRUE(waitFor([&] { return !ran.empty(); }));
  EXPECT_EQ(ran, "new");
}

TEST(Menu, whatIsChosenMayChangeTheMenuItIsIn) {
  QMenu menu;
  fillMenu(menu, {action("Only once", [&] { fillMenu(menu, {action("Other")}); })});
  menu.actions()[0]->trigger();
  ASSERT_TRUE(waitFor([&] { return texts(menu) == std::vector<std::string>{"Other"}; }));
}

}  // namespace
}  // namespace quillmark
