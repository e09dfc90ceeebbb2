#include <gmock/gmock.h>
#include <unistd.h>

#include "desktop/x11/X11Adapters.h"
#include "platform/desktop/x11/X11Screens.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct X11WorkspaceTest : X11Adapters {
  std::vector<std::string> activations;
  Connection activated = workspace.didActivateApplication.connect([this](const Application& application) {
    activations.push_back(application->bundleIdentifier().value_or("none"));
  });

  void bringToFront(xcb_window_t window) {
    session.activate(window);
    loop.runFor(30ms);
  }
};

TEST_F(X11WorkspaceTest, tellsWhichApplicationComesToTheFrontAndBringsItBackByItsLastWindow) {
  const auto letter = session.createWindow("Writer", 1001, "Letter");
  const auto report = session.createWindow("Writer", 1001, "Report");
  const auto browser = session.createWindow("Browser", 1002);
  bringToFront(browser);
  activations.clear();

  bringToFront(letter);
  bringToFront(report);
  const auto writer = workspace.frontmostApplication();
  bringToFront(browser);
  EXPECT_THAT(activations, ElementsAre("writer", "browser")) << "the second window of an application is no news";
  EXPECT_EQ(writer->localizedName(), "Writer");
  EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier(), "browser");

  writer->activate();
  ASSERT_TRUE(loop.runUntil([&] { return activations.size() == 3; }));
  EXPECT_EQ(session.activeWindow(), report);
  EXPECT_EQ(workspace.frontmostApplication(), writer);

  bringToFront(browser);
  session.close(report);
  loop.runFor(50ms);
  writer->activate();
  EXPECT_TRUE(loop.runUntil([&] { return session.activeWindow() == letter; })) << "the window it still has";
}

TEST_F(X11WorkspaceTest, keysWaitForTheApplicationThatIsBeingActivated) {
  const auto editor = session.createWindow("Editor", 1001);
  const auto panel = session.createWindow("Anything", getpid());
  session.setProperty(panel, "_QUILLMARK_PANEL", 1);
  const auto c = session.keyCode("c");
  for (int run = 0; run < 5; ++run) {
    bringToFront(editor);
    const auto application = workspace.frontmostApplication();
    bringToFront(panel);
    application->activate();
    post(KeyCode::c);
    EXPECT_TRUE(loop.runUntil([&] { return testing::Value(session.keysPressedIn(editor), testing::Contains(c)); }));
  }
  bringToFront(panel);
  post(KeyCode::c);
  loop.runFor(30ms);
  EXPECT_THAT(session.keysPressedIn(panel), testing::Not(testing::Contains(c))) << "a panel of ours is no application";
}

TEST_F(X11WorkspaceTest, processesOfOneProgramAreApartAndAWindowWithoutAProcessGoesByItsClass) {
  const auto first = session.createWindow("Terminal", 2001);
  const auto second = session.createWindow("Terminal", 2002);
  const auto untold = session.createWindow("Old", 0);
  bringToFront(first);
  activations.clear();
  bringToFront(second);
  bringToFront(untold);
  EXPECT_THAT(activations, ElementsAre("terminal", "old"));
}

TEST_F(X11WorkspaceTest, ownWindowsCountAndOwnPanelsDoNot) {
  const auto editor = session.createWindow("Editor", 3001);
  const auto settings = session.createWindow("Anything", getpid());
  const auto panel = session.createWindow("Anything", getpid());
  session.setProperty(panel, "_QUILLMARK_PANEL", 1);
  bringToFront(editor);
  activations.clear();

  bringToFront(panel);
  EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier(), "editor");
  bringToFront(editor);
  EXPECT_TRUE(activations.empty());

  bringToFront(settings);
  EXPECT_THAT(activations, ElementsAre("org.example.own"));
}

TEST_F(X11WorkspaceTest, anApplicationOutlivesTheWorkspace) {
  const auto editor = session.createWindow("Editor", 3001);
  bringToFront(editor);
  Application application;
  {
    X11Workspace another(connection, loop, "org.example.own");
    application = another.frontmostApplication();
    ASSERT_NE(application, nullptr);
  }
  application->activate();
  EXPECT_EQ(application->localizedName(), "Editor");
}

TEST_F(X11WorkspaceTest, addressesGoToTheBrowserOfTheDesktop) {
  const auto opener = session.home() / "xdg-open";
  const auto record = session.home() / "record";
  const std::string path = getenv("PATH");
  setenv("PATH", session.home().c_str(), 1);
  workspace.openUrl("https://quillmark.example/?a=b;c");
  EXPECT_THAT(lines, testing::HasSubstr("xdg-open is missing"));

  session.run({"/bin/sh", "-c",
               "printf '#!/bin/sh\nprintf %%s \"$1\" > " + record.string() + "\n' > " + opener.string() +
                   "; chmod +x " + opener.string()});
  workspace.openUrl("https://quillmark.example/?a=b;c");
  setenv("PATH", path.c_str(), 1);
  EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(record) && std::filesystem::file_size(record) == 32; }));
}

TEST_F(X11WorkspaceTest, screensAndPointerAreInLogicalPoints) {
  const auto dock = session.createWindow("Dock", 5001);
  const std::uint32_t strut[] = {0, 0, 40, 0};  // 40 pixels at the top
  xcb_change_property(session.connection(), XCB_PROP_MODE_REPLACE, dock, session.atom("_NET_WM_STRUT"),
                      XCB_ATOM_CARDINAL, 32, 4, strut);
  xcb_warp_pointer(session.connection(), XCB_NONE, session.root(), 0, 0, 0, 0, 300, 200);
  xcb_flush(session.connection());
  X11Screens screens(connection, 2);
  ASSERT_TRUE(waitUntil([&] {
    const auto list = screens.screens();
    return list.size() == 1 && list[0].visibleFrame == Rect{{0, 20}, {640, 380}};
  }));
  EXPECT_EQ(screens.screens()[0].frame, (Rect{{0, 0}, {640, 400}}));
  EXPECT_EQ(screens.mouseLocation(), (Point{150, 100}));
}

TEST_F(X11WorkspaceTest, aServerThatGoesAwayIsSurvived) {
  session.endServer();
  ASSERT_TRUE(loop.runUntil([&] { return lines.find("connection to the server is lost") != std::string::npos; }));
  const int before = loop.wakeUps();
  loop.runFor(50ms);
  EXPECT_LE(loop.wakeUps(), before + 1) << "a dead connection must not keep the loop awake";

  pasteboard.setString("text");
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_EQ(injector.createKeyboardEvent(KeyCode::c, true), std::nullopt);
  hotKeys.registerHotKey("name", {0x00, KeyCombination::control});
}

}  // namespace
}  // namespace quillmark
