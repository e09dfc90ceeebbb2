#include <gmock/gmock.h>

#include "providers/APIClient.h"
#include "support/TestHttpServer.h"
#include "wire/providers/ProviderWire.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

std::string answerWith(const std::string& content) {
  return toText(
      {{"model", "m"},
       {"object", "chat.completion"},
       {"created", 1},
       {"choices", Json::array({{{"index", 0}, {"message", {{"role", "assistant"}, {"content", content}}}}})}});
}

std::string event(const std::string& content) {
  return "data: " + toText({{"choices", Json::array({{{"index", 0}, {"delta", {{"content", content}}}}})}}) + "\n\n";
}

TEST_F(ProviderWire, sendsExactlyTheseHeaders) {
  TestHttpServer server;
  server.answer(Answer::json(200, answerWith("the cat")));
  server.answer(Answer::json(200, answerWith("the cat")));
  defaults.set("serviceToken", "s3cret-t0ken");
  defaults.set("appVersion", "2.13.0");
  ASSERT_TRUE(runToEnd(chat(*base(server.url("/v1")), "teh cat")));
  ASSERT_TRUE(runToEnd(chat(*hosted(server.port()), "teh cat")));

  const auto requests = server.waitForRequests(2);
  ASSERT_EQ(requests.size(), 2u);
  const std::string host = "Host: 127.0.0.1:" + std::to_string(server.port()) + "\r\n";
  const std::string session =
      "Accept-Encoding: br;q=1.0, gzip;q=0.9, deflate;q=0.8\r\nAccept-Language: de-DE;q=1.0, en;q=0.9\r\n"
      "User-Agent: quillmark/2.13.0 (org.quillmark; build:7; Linux 6.1.0) " +
      http.userAgentToken() + "\r\n";
  const auto length = [](const ReceivedRequest& request) {
    return "Content-Length: " + std::to_string(request.body.size()) + "\r\n\r\n";
  };
  EXPECT_EQ(requests[0].text, "POST /v1/chat/completions HTTP/1.1\r\n" + host +
                                  "Authorization: Bearer s3cret-k3y\r\nAccept: application/json\r\n"
                                  "Content-Type: application/json\r\n" +
                                  session + length(requests[0]) + requests[0].body);
  EXPECT_EQ(requests[1].text,
            "POST /api/app/completion HTTP/1.1\r\n" + host +
                "Authorization: Bearer s3cret-t0ken\r\nAccept: application/json\r\nX-AppVersion: 2.13.0\r\n"
                "Content-Type: application/json\r\n" +
                session + length(requests[1]) + requests[1].body);
}

TEST_F(ProviderWire, keepsBothSlashesOfThePathOfTheCounts) {
  TestHttpServer server;
  server.answer(Answer::json(200, "true"));
  defaults.set("useLocalApi", true);
  const AppConfig local(defaults, server.port());
  bool arrived = false;
  APIClient(transport, local, {.shortVersion = "2.13.0"})
      .post<bool>(
          "/app/statistics", Json::object(), "bool", [](const Json& json) { return json.get<bool>(); },
          [&arrived](const auto& answer) { arrived = answer && *answer; });
  ASSERT_TRUE(run([&] { return arrived; }));
  EXPECT_EQ(server.waitForRequests(1).at(0).target, "/api//app/statistics");
}

TEST_F(ProviderWire, streamsEachPieceWhenItArrives) {
  TestHttpServer server;
  Gate second, end;
  server.answer(Answer::eventStream()
                    .chunk(event("Gr\u00fc\u00dfe"))
                    .waitFor(second)
                    .chunk(event(", \u732b"))
                    .waitFor(end)
                    .chunk("data: [DONE]\n\n")
                    .end());
  const auto provider = base(server.url("/v1"));
  const auto talk = stream(*provider, "teh cat");
  ASSERT_TRUE(run([&] { return talk->pieces.size() == 1; })) << "before the server has said more";
  EXPECT_EQ(talk->pieces[0], "Gr\u00fc\u00dfe");
  second.open();
  ASSERT_TRUE(run([&] { return talk->pieces.size() == 2; }));
  EXPECT_FALSE(talk->ended);
  end.open();
  ASSERT_TRUE(runToEnd(talk));
  EXPECT_EQ(talk->whole, "Gr\u00fc\u00dfe, \u732b");
}

TEST_F(ProviderWire, goesOnBehindACharacterThatWasCut) {
  TestHttpServer server;
  Gate eventsCut, textCut;
  const auto whole = event("gr\u00fcn");
  const auto inside = whole.find('\xBC');
  server.answer(Answer::eventStream()
                    .chunk(event("one "))
                    .chunk(whole.substr(0, inside))
                    .waitFor(eventsCut)
                    .chunk(whole.substr(inside) + event("two"))
                    .end());
  server.answer(Answer::raw("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 5\r\n\r\ngr\xC3")
                    .waitFor(textCut)
                    .send("\xBC"
                          "n"));

  const auto events = base(server.url("/v1"));
  const auto talk = stream(*events, "teh cat");
  ASSERT_TRUE(run([&] { return talk->pieces.size() == 1; }) && eventsCut.waitUntilReached());
  eventsCut.open();
  ASSERT_TRUE(runToEnd(talk));
  EXPECT_THAT(talk->pieces, ElementsAre("one ", "two")) << "an event counts when it comes in one piece";

  const auto plain = hosted(server.port());
  const auto plainTalk = stream(*plain, "teh cat");
  ASSERT_TRUE(run([&] { return plainTalk->pieces.size() == 1; }));
  textCut.open();
  ASSERT_TRUE(runToEnd(plainTalk));
  EXPECT_THAT(plainTalk->pieces, ElementsAre("gr\uFFFD", "\uFFFDn"));
}

TEST_F(ProviderWire, keepsWhatArrivedBeforeTheConnectionBroke) {
  TestHttpServer server;
  for (const bool orderly : {true, false}) {
    Gate arrived;
    auto answer = Answer::eventStream().chunk(event("half")).waitFor(arrived);
    server.answer(orderly ? std::move(answer).close() : std::move(answer).reset());
    const auto provider = base(server.url("/v1"));
    const auto talk = stream(*provider, "teh cat");
    ASSERT_TRUE(run([&] { return !talk->pieces.empty(); }));
    arrived.open();
    ASSERT_TRUE(runToEnd(talk));
    EXPECT_EQ(talk->whole, "half");
  }
  EXPECT_TRUE(alerts.shown.empty());

  server.answer(
      Answer::raw("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 100\r\n\r\n{").close());
  const auto provider = base(server.url("/v1"));
  const auto talk = chat(*provider, "teh cat");
  ASSERT_TRUE(runToEnd(talk) && run([&] { return !alerts.shown.empty(); }));
  EXPECT_EQ(talk->whole, "(absent)");
  EXPECT_EQ(alerts.shown[0].title, "Mine Issue");
  EXPECT_EQ(alerts.shown[0].message, "URLSessionTask failed with error: The network connection was lost.");
}

TEST_F(ProviderWire, holdsAHundredTalksAtOnce) {
  constexpr std::size_t count = 100;
  TestHttpServer server;
  Gate all;
  server.answerOthers([all](const ReceivedRequest& request) {
    const Json asked = parseJson(request.body);
    const std::string text = asked.at("messages").back().at("content");
    if (asked.at("stream") == true) {
      return Answer::eventStream().waitFor(all).chunk(event(text)).chunk(event("!") + "data: [DONE]\n\n").end();
    }
    const auto body = answerWith(text + "!");
    return Answer::raw("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n")
        .waitFor(all)
        .send("Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
  });
  std::vector<std::shared_ptr<Talk>> talks;
  for (std::size_t i = 0; i < count; ++i) {
    // A provider object is gone before its answer comes.
    const auto provider = base(server.url("/v1"));
    const auto text = "text " + std::to_string(i);
    talks.push_back(i % 2 == 0 ? chat(*provider, text) : stream(*provider, text));
  }
  EXPECT_EQ(server.waitForRequests(count).size(), count) << "none waits for another";
  all.open();
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_TRUE(runToEnd(talks[i])) << i;
    EXPECT_EQ(talks[i]->whole, "text " + std::to_string(i) + "!");
  }
  EXPECT_TRUE(alerts.shown.empty());
}

}  // namespace
}  // namespace quillmark
