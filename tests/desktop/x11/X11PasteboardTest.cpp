#include <gmock/gmock.h>

#include "desktop/x11/X11Adapters.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

std::string longText(std::size_t size) {
  std::string text;
  for (int line = 0; text.size() < size; ++line) {
    text += "Zeile " + std::to_string(line) + " äöü\n";
  }
  return text;
}

/// Another application that owns the clipboard.
class Owner {
 public:
  Owner(XSession& session, EventLoop& loop)
      : session_(session), connection_(xcb_connect(session.display().c_str(), nullptr)) {
    xcb_create_window(connection_, 0, window_, session.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    loop.watch(xcb_get_file_descriptor(connection_), [this] { drain(); });
  }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;
  ~Owner() { xcb_disconnect(connection_); }

  /// Offers these bytes by target.
  void own(const std::map<std::string, std::string>& offers) {
    offers_.clear();
    for (const auto& [target, bytes] : offers) {
      offers_[session_.atom(target)] = bytes;
    }
    xcb_set_selection_owner(connection_, window_, session_.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));  // it does by now
  }

  enum { answers, neverAnswers, beginsAndStops } manner = answers;

 private:
  void drain() {
    while (const auto event = owned(xcb_poll_for_event(connection_))) {
      if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST && manner != neverAnswers) {
        serve(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
      }
    }
    xcb_flush(connection_);
  }
  void serve(const xcb_selection_request_event_t& request) {
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    if (const auto offer = offers_.find(request.target); offer != offers_.end()) {
      notify.property = request.property;
      xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                          manner == beginsAndStops ? session_.atom("INCR") : request.target, 8,
                          static_cast<std::uint32_t>(offer->second.size()), offer->second.data());
    }
    xcb_send_event(connection_, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
  }

  XSession& session_;
  xcb_connection_t* connection_;
  xcb_window_t window_ = xcb_generate_id(connection_);
  std::map<xcb_atom_t, std::string> offers_;
};

struct X11PasteboardTest : X11Adapters {
  Owner other{session, loop};

  /// What other programs get when they all ask for this target at once; "refused" when they don't get it.
  std::string fetch(const std::string& target, int readers = 1) {
    std::map<std::filesystem::path, std::unique_ptr<Process>> all;
    for (int i = 0; i < readers; ++i) {
      const auto file = session.home() / ("read " + std::to_string(i));
      std::filesystem::remove(file);
      all[file] = session.start({"xclip", "-selection", "clipboard", "-out", "-target", target}, file);
    }
    std::set<std::string> texts;
    for (const auto& [file, reader] : all) {
      EXPECT_TRUE(loop.runUntil([&, &each = *reader] { return !each.running(); })) << target;
      texts.insert(reader->exitStatus() == 0 ? readFile(file) : "refused");
    }
    EXPECT_EQ(texts.size(), 1u);
    return *texts.begin();
  }
};

TEST_F(X11PasteboardTest, offersItsTextInEveryFormThatProgramsAskFor) {
  pasteboard.setString("Grüße");
  const auto targets = fetch("TARGETS");
  for (const std::string target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"}) {
    EXPECT_THAT(targets, HasSubstr(target + "\n"));
    EXPECT_EQ(fetch(target), "Grüße") << target;
  }
  EXPECT_THAT(targets, HasSubstr("\nSTRING\n"));
  EXPECT_EQ(fetch("STRING"), std::string("Gr\xFC\xDF") + 'e');
  EXPECT_EQ(fetch("image/png"), "refused");

  pasteboard.setString("日本語");
  EXPECT_EQ(fetch("STRING"), "refused") << "Latin-1 can't hold it";
  EXPECT_THAT(fetch("TARGETS"), Not(HasSubstr("\nSTRING\n")));
}

TEST_F(X11PasteboardTest, answersSeveralTargetsInOneRequest) {
  pasteboard.setString("one");
  const auto reader = session.createWindow("Reader", 4711);
  const xcb_atom_t parts[] = {session.atom("image/png"), session.atom("A"), session.atom("text/plain"),
                              session.atom("B")};
  xcb_change_property(session.connection(), XCB_PROP_MODE_REPLACE, reader, session.atom("PARTS"),
                      session.atom("ATOM_PAIR"), 32, std::size(parts), parts);
  xcb_convert_selection(session.connection(), reader, session.atom("CLIPBOARD"), session.atom("MULTIPLE"),
                        session.atom("PARTS"), XCB_CURRENT_TIME);
  EXPECT_TRUE(loop.runUntil([&] { return session.property(reader, "B") == "one"; }));
  const xcb_atom_t answered[] = {parts[0], XCB_ATOM_NONE, parts[2], parts[3]};
  EXPECT_TRUE(loop.runUntil([&] {
    return session.property(reader, "PARTS") == std::string(reinterpret_cast<const char*>(answered), sizeof answered);
  }));
}

TEST_F(X11PasteboardTest, clearedItReadsAsNothingAndAsksManagersNotToKeepIt) {
  pasteboard.setString("old");
  pasteboard.clearContents();
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_THAT(fetch("TARGETS"), Not(HasSubstr("STRING")));
  EXPECT_EQ(fetch("UTF8_STRING"), "refused");
  EXPECT_EQ(fetch("x-kde-passwordManagerHint"), "secret");
}

TEST_F(X11PasteboardTest, followsEveryChangeOfOwner) {
  for (int round = 0; round < 20; ++round) {
    const auto text = "text " + std::to_string(round);
    pasteboard.clearContents();
    other.own({{"UTF8_STRING", text}});
    EXPECT_EQ(read(), text);
    other.own({{"UTF8_STRING", "not seen"}});  // the news of it lies unread while we take over
    pasteboard.setString(text);
    EXPECT_EQ(read(), text);
    EXPECT_EQ(fetch("UTF8_STRING"), text);
  }
}

TEST_F(X11PasteboardTest, takesWhatTheOwnerHas) {
  const std::pair<std::pair<const char*, std::string>, std::optional<std::string>> cases[] = {
      {{"text/plain;charset=utf-8", "plain"}, "plain"},
      {{"STRING", "na\xEFve"}, "naïve"},
      {{"UTF8_STRING", std::string("counted in\0", 11)}, "counted in"},
      {{"UTF8_STRING", "broken \xFF"}, "broken \uFFFD"},
      {{"image/png", "not a text"}, std::nullopt},
      {{"UTF8_STRING", ""}, std::nullopt},
  };
  for (const auto& [offer, text] : cases) {
    other.own({offer});
    EXPECT_EQ(read(), text) << offer.first;
  }
  EXPECT_EQ(lines, "") << "every answer came";
}

TEST_F(X11PasteboardTest, longTextsGoInPiecesBothWays) {
  const auto text = longText(5'000'000);  // too much for one request
  pasteboard.setString(text);
  EXPECT_TRUE(fetch("text/plain", 3) == text);

  const auto file = session.home() / "text";
  writeFile(file, text);
  const auto owner = session.start({"xclip", "-quiet", "-selection", "clipboard", "-in", file});
  ASSERT_TRUE(loop.runUntil([&] { return fetch("TARGETS").find("text/plain") == std::string::npos; }));
  EXPECT_TRUE(read() == text);
}

TEST_F(X11PasteboardTest, anOwnerThatHangsCostsNothingButTheText) {
  for (const auto manner : {Owner::neverAnswers, Owner::beginsAndStops}) {
    other.manner = manner;
    other.own({{"UTF8_STRING", "never seen"}});
    lines.clear();
    int ticks = 0;
    auto timer = loop.every(10ms, [&] { ++ticks; });
    EXPECT_EQ(read(), std::nullopt);
    timer.cancel();
    EXPECT_GT(ticks, 20) << "the loop went on";
    EXPECT_THAT(lines, HasSubstr("does not answer"));
  }
  other.manner = Owner::answers;
  other.own({{"UTF8_STRING", "alive"}});
  EXPECT_EQ(read(), "alive");
}

}  // namespace
}  // namespace quillmark
