#include <algorithm>

#include "base/Json.h"
#include "desktop_demo/Runs.h"
#include "platform/posix/SqliteUserDefaults.h"

namespace quillmark::demo {
namespace {

using namespace std::chrono_literals;

constexpr auto deadline = 10s;
constexpr int reviews = 30;

using Keys = std::vector<std::string_view>;

/// The steps of a case; each throws a description of its failure.
class Steps {
 public:
  Steps(LiveDesktop& desk, Editor& editor) : desk_(desk), editor_(editor), session_(desk.session()) {}

  void select(const std::string& text) {
    editor_.write(text);
    editor_.selectAll();
    editorWindow_ = session_.activeWindow();
    desk_.trace().startAnew();
  }

  /// Waits until the condition holds, or throws the problem.
  void expect(const std::string& problem, const std::function<bool()>& holds) {
    if (!waitUntil(holds, deadline)) {
      fail(problem);
    }
  }
  /// Waits for a mark since the last step that looked for one.
  void await(trace::Stage stage) {
    if (!waitUntil([&] { return desk_.trace().momentOf(stage).has_value(); }, deadline)) {
      fail(std::string("no \"").append(stage.name).append("\"; ") + marksOf(desk_.trace()));
    }
  }
  void awaitKeyboard() {
    expect("the panel did not get the keyboard", [&] { return panel() != 0 && session_.activeWindow() == panel(); });
  }
  void tap(const Keys& keys, std::optional<trace::Stage> stage = std::nullopt) {
    desk_.trace().startAnew();
    session_.tap(keys);
    if (stage) {
      await(*stage);
    }
  }
  void review(const std::string& text) {
    select(text);
    desk_.triggerHotKey();
    await(trace::reviewAnswered);
    awaitKeyboard();
  }
  void openMenu() {
    desk_.trace().startAnew();
    session_.tap({"Control_L", "Alt_L", "k"});
    await(trace::commandMenuShown);
    awaitKeyboard();
  }

  void expectSaved(const std::string& text) {
    if (!editor_.savesAs(text, deadline)) {
      fail("expected " + shown(text) + ", saved " + shown(editor_.fileContents()));
    }
  }
  void expectEditorInFront() {
    expect("the editor is not in front", [&] { return session_.activeWindow() == editorWindow_; });
  }
  void expectNoPanel() {
    expect("a panel is still there", [&] { return panel() == 0; });
  }
  void expectClipboard(const std::string& text) {
    const auto file = desk_.home() / "clipboard";
    expect("the clipboard does not hold " + shown(text), [&] {
      session_.run({"xclip", "-selection", "clipboard", "-out"}, file);
      return readFile(file) == text;
    });
  }
  /// Nothing that would change the editor's text happens.
  void expectNothingPasted(std::chrono::milliseconds during = 500ms) {
    if (waitUntil([&] { return desk_.trace().momentOf(trace::pasteKeyPosted).has_value(); }, during)) {
      fail("something was pasted");
    }
  }

  /// The open panel, 0 when there is none.
  xcb_window_t panel() {
    const auto all = session_.windows();
    const auto own = std::ranges::find(all, desk_.quillmarkPid(), &XSession::Window::pid);
    return own == all.end() ? 0 : own->id;
  }
  Editor& editor() { return editor_; }
  XSession& session() { return session_; }

  [[noreturn]] void fail(const std::string& reason) { throw std::runtime_error(failed(desk_, reason).reason); }

 private:
  LiveDesktop& desk_;
  Editor& editor_;
  XSession& session_;
  xcb_window_t editorWindow_ = 0;
};

void store(LiveDesktop& desk, const std::vector<std::pair<std::string, DefaultsValue>>& settings) {
  SqliteUserDefaults defaults(desk.data() / "defaults.sqlite");
  for (const auto& [key, value] : settings) {
    defaults.set(key, value);
  }
}

const std::pair<std::string, DefaultsValue> withReview{"defaultBehavior", std::string("showReview")};

std::string content(const ReceivedRequest& request) {
  return parseJson(request.body).at("messages").back().at("content").get<std::string>();
}

/// The hosted service answers with a word before the text, in two pieces; counts are taken.
Answer answerTo(const ReceivedRequest& request) {
  if (request.target.ends_with("/api/app/completion")) {
    const Json body = parseJson(request.body);
    const std::string system = body.at("messages").front().at("content");
    const std::string word = system.find("rhyme") != std::string::npos ? "Rhymed " : "Corrected ";
    if (body.value("stream", false)) {
      return Answer::eventStream().chunk(word).chunk(content(request)).end();
    }
    return completion(word + content(request));
  }
  return Answer::json(200, R"({"success":true})");
}

}  // namespace

Outcome reviewRuns(const Programs& programs, const std::string& editorKind) {
  LiveDesktop desk(programs);
  store(desk, {withReview});
  Editor editor(desk, editorKind);
  Steps steps(desk, editor);
  for (int number = 0; number < reviews; ++number) {
    const auto sample = sampleText(number);
    steps.review(sample.typed);
    for (const auto mark :
         {trace::reviewShowsStyled, trace::reviewShowsLines, trace::reviewShowsWords, trace::reviewShowsText}) {
      steps.tap({"Tab"}, mark);
    }
    steps.tap({"Return"}, trace::pasteKeyPosted);
    steps.expectSaved(sample.corrected);
    steps.expectEditorInFront();
    steps.expectNoPanel();
  }
  return {true, std::to_string(reviews) + " reviews"};
}

Outcome reviewEndings(const Programs& programs, const std::string& editorKind) {
  TestHttpServer backend;
  backend.answerOthers(answerTo);
  LiveDesktop desk(programs.quillmark, backend.port());
  store(desk, {withReview});
  Editor editor(desk, editorKind);
  Steps steps(desk, editor);
  steps.review("to copy");
  steps.tap({"Control_L", "c"}, trace::pasteboardWritten);
  steps.expectEditorInFront();
  steps.expectClipboard("Corrected to copy");
  steps.expectNothingPasted();
  steps.expectNoPanel();

  steps.review("to discard");
  steps.tap({"Escape"});
  steps.expectNoPanel();
  steps.expectNothingPasted();
  steps.expectEditorInFront();
  if (editor.fileContents() != "to discard") {
    steps.fail("a discarded review has changed the text");
  }

  return {true, "copied and discarded"};
}

Outcome commandMenu(const Programs& programs, const std::string& editorKind) {
  TestHttpServer backend;
  backend.answerOthers(answerTo);
  LiveDesktop desk(programs.quillmark, backend.port());
  store(desk, {{"KeyboardShortcuts_commandMenu", std::string(R"({"carbonKeyCode":40,"carbonModifiers":6144})")}});
  Editor editor(desk, editorKind);
  Steps steps(desk, editor);
  steps.select("by keys");
  steps.openMenu();
  steps.session().type("improve text");
  steps.tap({"Return"}, trace::pasteKeyPosted);
  steps.expectSaved("Corrected by keys");
  steps.expectEditorInFront();

  steps.select("by mouse");
  steps.openMenu();
  const auto menu = steps.session().areaOf(steps.panel());
  constexpr int secondRow = 45 + 8 + 36 + 18;
  desk.trace().startAnew();
  steps.session().click(menu.x + menu.width / 2, menu.y + secondRow);
  steps.await(trace::pasteKeyPosted);
  steps.expectSaved("Corrected by mouse");
  steps.expectEditorInFront();

  steps.select("a task");
  steps.openMenu();
  steps.tap({"Tab"});
  steps.session().type("make it rhyme");
  steps.tap({"Return"}, trace::reviewAnswered);
  steps.awaitKeyboard();
  steps.tap({"Return"}, trace::pasteKeyPosted);
  steps.expectSaved("Rhymed a task");

  steps.select("left alone");
  for (const bool byClick : {true, false}) {
    steps.openMenu();
    if (byClick) {
      const auto window = steps.session().areaOf(steps.session().waitForWindow(editor.pid()).id);
      steps.session().click(window.x + 30, window.y + window.height - 60);
    } else {
      steps.tap({"Escape"});
    }
    steps.expectNoPanel();
    steps.expectEditorInFront();
    steps.expectNothingPasted(200ms);
  }
  if (editor.fileContents() != "left alone") {
    steps.fail("a closed menu has changed the text");
  }
  return {true, "by keys, by mouse, a task, closed by a click and by Escape"};
}

}  // namespace quillmark::demo
