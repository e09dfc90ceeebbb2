#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/posix/CurlHttpSession.h"
#include "support/TestHttpServer.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

/// The outcome of one request.
class Outcome {
 public:
  HttpHandlers handlers() {
    return {[this](const HttpResponseHead& head) {
              note([&] { heads.push_back(head), order += 'h'; });
              return goesOn;
            },
            [this](std::string bytes) { note([&] { body += bytes, order += 'b'; }); },
            [this](std::optional<HttpFailure> failed) {
              note([&] { failure = std::move(failed), order += 'c', isComplete = true; });
            }};
  }

  bool waitForBody(std::string_view expected) {
    return wait([&] { return body == expected; });
  }
  bool waitForEnd() {
    return wait([this] { return isComplete; });
  }
  bool hasEnded() {
    const std::lock_guard lock(mutex_);
    return isComplete;
  }

  // To be read after waitForEnd(), or in the thread that waits.
  std::vector<HttpResponseHead> heads;
  std::string body;
  std::optional<HttpFailure> failure;
  std::string order;
  bool isComplete = false;
  bool goesOn = true;  ///< what onHead returns; set before the request

 private:
  template <class Change>
  void note(Change change) {
    const std::lock_guard lock(mutex_);
    change();
    changed_.notify_all();  // under the lock: the waiting thread may destroy this right afterwards
  }
  template <class Condition>
  bool wait(Condition condition) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, 30s, condition);
  }

  std::mutex mutex_;
  std::condition_variable changed_;
};

class HandTurnedClock {
 public:
  CurlHttpOptions::Clock::time_point now() const { return CurlHttpOptions::Clock::time_point(time_.load()); }
  void turn(std::chrono::seconds by) { time_ = time_.load() + by; }

 private:
  std::atomic<std::chrono::nanoseconds> time_{std::chrono::hours(1)};
};

struct HttpOverTheWire : testing::Test {
  static void SetUpTestSuite() { setenv("no_proxy", "127.0.0.1,localhost", 1); }

  HttpRequest get(std::string_view path, std::vector<HttpHeader> headers = {}) {
    return {"GET", server.url(path), std::move(headers), std::nullopt};
  }
  HttpRequest post(std::string_view path, std::string body, std::vector<HttpHeader> headers = {}) {
    return {"POST", server.url(path), std::move(headers), std::move(body)};
  }
  /// The outcome of a request, at its end.
  Outcome& finish(HttpRequest request) {
    Outcome& each = outcomes.emplace_back();
    session.start(std::move(request), each.handlers());
    EXPECT_TRUE(each.waitForEnd());
    return each;
  }

  TestHttpServer server;
  // These outlive the session, which may be in one of their handlers.
  std::deque<Outcome> outcomes;
  Outcome outcome;
  CurlHttpSession session;
};

std::string ok(std::string_view body, std::string_view headerLines = "Content-Type: text/plain\r\n") {
  return "HTTP/1.1 200 OK\r\n" + std::string(headerLines) + "Content-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + std::string(body);
}

std::string redirect(int status, const std::string& location) {
  return "HTTP/1.1 " + std::to_string(status) + " Elsewhere\r\nLocation: " + location +
         "\r\nContent-Type: text/html\r\nContent-Length: 7\r\n\r\n<a/>...";
}

TEST_F(HttpOverTheWire, nothingIsSentBesideWhatWasGiven) {
  server.answerOthers([](const ReceivedRequest&) { return Answer::raw(ok("")); });
  const std::string host = "Host: 127.0.0.1:" + std::to_string(server.port()) + "\r\n";

  finish(get("//bare"));
  finish(post("/full", "{\"a\":1}",
              {{"Accept-Encoding", "br;q=1.0, gzip;q=0.9"},
               {"X-AppVersion", ""},
               {"User-Agent", "Quillmark/1.0"},
               {"content-type", "application/json"},
               {"Authorization", "Bearer key\n"}}));
  // Large bodies make clients ask for permission first.
  finish(post("/large", std::string(3'000'000, 'x')));
  const auto requests = server.waitForRequests(3);
  ASSERT_EQ(requests.size(), 3u);
  EXPECT_EQ(requests[0].text, "GET //bare HTTP/1.1\r\n" + host + "\r\n") << "a path stays as it is";
  EXPECT_EQ(requests[1].text, "POST /full HTTP/1.1\r\n" + host +
                                  "Accept-Encoding: br;q=1.0, gzip;q=0.9\r\nX-AppVersion:\r\n"
                                  "User-Agent: Quillmark/1.0\r\ncontent-type: application/json\r\n"
                                  "Authorization: Bearer key\r\nContent-Length: 7\r\n\r\n{\"a\":1}");
  EXPECT_TRUE(requests[2].text.starts_with("POST /large HTTP/1.1\r\n" + host + "Content-Length: 3000000\r\n\r\nxxx"));
  EXPECT_EQ(requests[2].connection, 1) << "one connection serves all";
}

TEST_F(HttpOverTheWire, aRequestThatCouldSmuggleSomethingInIsNotSent) {
  const std::vector<HttpRequest> bad{
      get("/", {{"X-Key", "a\r\nX-Other: b"}}),
      get("/", {{"X-Key", std::string("a\0b", 3)}}),
      get("/", {{"X-Key: b\r\nX", "a"}}),
      get("/", {{"", "a"}}),
      get("/a b\r\nX: y"),
      {"DELETE", server.url(), {}, std::nullopt},
      {"GET", "file:///etc/hostname", {}, std::nullopt},
      {"GET", "127.0.0.1:" + std::to_string(server.port()), {}, std::nullopt},
      {"GET", "", {}, std::nullopt},
  };
  for (const auto& request : bad) {
    const auto& refused = finish(request);
    EXPECT_TRUE(refused.failure) << request.url;
    EXPECT_EQ(refused.order, "c");
  }
  finish(get("/last"));
  EXPECT_EQ(server.waitForRequests(1).size(), 1u) << "only the last one was sent";
}

TEST_F(HttpOverTheWire, bytesAreHandedOnAsTheyArriveWhereverTheyAreCut) {
  Gate inHead, inCharacter, beforeEnd;
  server.answer(Answer::raw("HTTP/1.1 200 OK\r\nContent-Type: Text/Event-Stream; char")
                    .waitFor(inHead)
                    .send("set=utf-8\r\nTransfer-Encoding: chunked\r\n\r\n8\r\ndata: \xC3")
                    .waitFor(inCharacter)
                    .send("\xA9\r\n4\r\n\n\nda\r\n")
                    .waitFor(beforeEnd)
                    .end());
  session.start(get("/stream"), outcome.handlers());

  ASSERT_TRUE(inHead.waitUntilReached());
  inHead.open();
  ASSERT_TRUE(outcome.waitForBody("data: \xC3"));
  ASSERT_EQ(outcome.heads.size(), 1u);
  EXPECT_EQ(outcome.heads[0].status, 200);
  EXPECT_EQ(outcome.heads[0].mimeType, "text/event-stream");
  inCharacter.open();
  ASSERT_TRUE(outcome.waitForBody("data: \xC3\xA9\n\nda"));
  EXPECT_FALSE(outcome.hasEnded());
  beforeEnd.open();
  ASSERT_TRUE(outcome.waitForEnd());
  EXPECT_FALSE(outcome.failure);
  EXPECT_EQ(outcome.order.front(), 'h');
  EXPECT_EQ(outcome.order.back(), 'c');
}

TEST_F(HttpOverTheWire, theHeadIsTheOneOfTheFinalAnswer) {
  server.answer(
      Answer::raw("HTTP/1.1 103 Early Hints\r\nContent-Type: text/css\r\n\r\n"
                  "HTTP/1.1 502 Bad Gateway\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nbad\r\n"
                  "0\r\nContent-Type: text/late\r\n\r\n"));
  const auto& answered = finish(get("/"));
  ASSERT_EQ(answered.heads.size(), 1u);
  EXPECT_EQ(answered.heads[0].status, 502);
  EXPECT_FALSE(answered.heads[0].mimeType);
  EXPECT_EQ(answered.body, "bad");
  EXPECT_FALSE(answered.failure) << "a status is an answer, not a failure";
}

TEST_F(HttpOverTheWire, contentCodingsAreUndone) {
  const std::vector<std::pair<std::string, std::string>> packed{
      {"gzip", std::string("\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\x4b\xcc\x53\x48\xcc\x2b\x2e\x4f\x2d\xd2\x51\x28"
                           "\x48\x4c\xce\x4e\x4d\x01\x00\xd6\xfb\x6b\xd5\x11\x00\x00\x00",
                           37)},
      {"deflate",
       std::string(
           "\x78\x9c\x4b\xcc\x53\x48\xcc\x2b\x2e\x4f\x2d\xd2\x51\x28\x48\x4c\xce\x4e\x4d\x01\x00\x37\x5b\x06\x34", 25)},
      {"br", std::string("\x00\x01\x10\x61\x6e\x20\x61\x6e\x73\x77\x65\x72\x2c\x20\x70\x61\x63\x6b\x65\x64\x03", 21)},
  };
  for (const auto& [coding, bytes] : packed) {
    server.answer(Answer::withBody(200, bytes, {"Content-Type: text/plain", "Content-Encoding: " + coding}));
    const auto& each = finish(get("/", {{"Accept-Encoding", "br, gzip, deflate"}}));
    EXPECT_EQ(each.body, "an answer, packed") << coding << (each.failure ? ": " + each.failure->description : "");
  }
}

TEST_F(HttpOverTheWire, redirectsAreFollowedAndOnlySomeKeepTheBody) {
  for (const int status : {301, 302, 303, 307, 308}) {
    const bool keepsBody = status >= 307;
    const auto before = server.waitForRequests(0).size();
    server.answer(Answer::raw(redirect(status, "/moved?x=1")));
    server.answer(Answer::raw(ok("here")));
    const auto& each = finish(post("/old", "text", {{"Authorization", "Bearer key"}}));
    const auto requests = server.waitForRequests(before + 2);
    ASSERT_EQ(requests.size(), before + 2);
    EXPECT_EQ(requests.back().method, keepsBody ? "POST" : "GET") << status;
    EXPECT_EQ(requests.back().target, "/moved?x=1");
    EXPECT_EQ(requests.back().body, keepsBody ? "text" : "") << status;
    EXPECT_EQ(requests.back().header("Authorization"), "Bearer key");
    EXPECT_EQ(each.order, "hbc");
    EXPECT_EQ(each.heads[0].status, 200);
    EXPECT_EQ(each.body, "here");
  }
}

TEST_F(HttpOverTheWire, aRedirectToAnotherHostDoesNotGetTheKey) {
  TestHttpServer other;
  server.answer(Answer::raw(redirect(307, "http://localhost:" + std::to_string(other.port()) + "/")));
  other.answer(Answer::raw(ok("here")));
  finish(post("/", "text", {{"Authorization", "Bearer key"}, {"X-Kept", "yes"}}));
  const auto requests = other.waitForRequests(1);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_FALSE(requests[0].header("Authorization"));
  EXPECT_EQ(requests[0].header("X-Kept"), "yes");

  // A key in a header of its own can't be withheld: the request ends first.
  server.answer(Answer::raw(redirect(307, "http://localhost:" + std::to_string(other.port()) + "/")));
  server.answer(Answer::raw(redirect(307, "/moved")));
  server.answer(Answer::raw(ok("here")));
  const auto& refused = finish(post("/", "text", {{"x-api-key", "key"}}));
  ASSERT_TRUE(refused.failure);
  EXPECT_THAT(refused.failure->description, HasSubstr("must not get the key"));
  EXPECT_EQ(other.waitForRequests(0).size(), 1u);
  EXPECT_EQ(finish(post("/", "text", {{"x-api-key", "key"}})).body, "here");
}

TEST_F(HttpOverTheWire, aTransferThatIsNotWantedIsDropped) {
  Gate rest;
  server.answer(Answer::raw("HTTP/1.1 401 Unauthorized\r\nContent-Length: 1000000\r\n\r\nx").waitFor(rest));
  outcome.goesOn = false;
  session.start(get("/"), outcome.handlers());
  ASSERT_TRUE(outcome.waitForEnd());
  EXPECT_FALSE(outcome.failure);
  EXPECT_EQ(outcome.order, "hc");
  rest.open();
  EXPECT_TRUE(server.waitForHangUps(1)) << "the rest of it has nowhere to go";
}

TEST_F(HttpOverTheWire, failuresSayWhatFailed) {
  const std::string host = "127.0.0.1:" + std::to_string(refusedPort);
  server.answer(Answer::raw(redirect(302, "file:///etc/hostname")));
  server.answerOthers([](const ReceivedRequest&) { return Answer::raw(redirect(302, "/again")); });
  const std::pair<HttpRequest, std::string> cases[] = {
      {get("/leaves"), "The server redirected the request to an address that is not allowed."},
      {get("/again"), "The server redirected the request too many times."},
      {{"GET", "http://" + host + "/v1/models?key=secret", {}, std::nullopt},
       "Could not connect to the server " + host + "."},
  };
  for (const auto& [request, description] : cases) {
    const auto& each = finish(request);
    ASSERT_TRUE(each.failure);
    EXPECT_EQ(each.failure->description, description);
    EXPECT_EQ(each.order, "c");
  }
  EXPECT_EQ(server.waitForRequests(22).size(), 22u);
}

TEST_F(HttpOverTheWire, aConnectionThatBreaksFailsTheRequestAfterWhatHadArrived) {
  for (const bool orderly : {true, false}) {
    Gate arrived;
    auto answer = Answer::eventStream().chunk("one").waitFor(arrived);
    server.answer(orderly ? std::move(answer).close() : std::move(answer).reset());
    Outcome each;
    session.start(get("/"), each.handlers());
    ASSERT_TRUE(each.waitForBody("one"));
    arrived.open();
    ASSERT_TRUE(each.waitForEnd());
    ASSERT_TRUE(each.failure);
    EXPECT_EQ(each.failure->description, "The network connection was lost.");
    EXPECT_EQ(each.order, "hbc");
  }
}

TEST_F(HttpOverTheWire, aHandlerThatThrowsHarmsNobody) {
  std::mutex mutex;
  std::vector<std::string> lines;
  setLogSink([&](std::string_view line) {
    const std::lock_guard lock(mutex);
    lines.emplace_back(line);
  });
  server.answer(Answer::raw(ok("text")));
  auto handlers = outcome.handlers();
  handlers.onHead = [](const HttpResponseHead&) -> bool { throw std::runtime_error("no idea"); };
  session.start(get("/"), std::move(handlers));
  ASSERT_TRUE(outcome.waitForEnd());
  setLogSink({});
  EXPECT_EQ(outcome.body, "text");
  EXPECT_FALSE(outcome.failure);
  EXPECT_THAT(lines, ElementsAre(HasSubstr("no idea")));
}

TEST_F(HttpOverTheWire, manyRequestsRunAtOnceAndAHandlerMayStartOne) {
  constexpr std::size_t count = 40;
  Gate all;
  server.answerOthers(
      [all](const ReceivedRequest& request) { return Answer::raw("").waitFor(all).send(ok(request.target)); });
  std::vector<Outcome> many(count);
  Outcome nested;
  for (std::size_t i = 0; i < count; ++i) {
    auto handlers = many[i].handlers();
    if (i == 0) {
      handlers.onHead = [&](const HttpResponseHead&) {
        session.start(get("/nested"), nested.handlers());
        return true;
      };
    }
    session.start(get("/" + std::to_string(i)), std::move(handlers));
  }
  EXPECT_EQ(server.waitForRequests(count).size(), count) << "none waits for another";
  all.open();
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_TRUE(many[i].waitForEnd());
    EXPECT_EQ(many[i].body, "/" + std::to_string(i));
  }
  ASSERT_TRUE(nested.waitForEnd());
  EXPECT_EQ(nested.body, "/nested");
}

TEST_F(HttpOverTheWire, theEndOfTheSessionDropsWhatIsInFlight) {
  Gate never;
  Outcome pending;
  server.answer(Answer::eventStream().chunk("one").waitFor(never).end());
  CurlHttpSession shortLived;
  shortLived.start(get("/"), pending.handlers());
  ASSERT_TRUE(pending.waitForBody("one"));
  shortLived.start(get("/never sent, perhaps"), {});
  shortLived.stop();
  shortLived.start(get("/too late"), pending.handlers());
  EXPECT_EQ(pending.order, "hb");
  { CurlHttpSession unused; }
  { CurlHttpSession().warmUp(); }
  never.open();
  EXPECT_TRUE(server.waitForHangUps(1)) << "the connection is gone, too";
}

TEST_F(HttpOverTheWire, aMinuteWithoutAnyByteFailsARequest) {
  HandTurnedClock clock;
  Outcome silent, talking, patient;
  Gate later, end;
  CurlHttpSession timed({.caBundle = {}, .now = [&clock] { return clock.now(); }});
  const auto turn = [&](std::chrono::seconds by) {
    clock.turn(by);
    timed.lookAtClock();
  };
  server.answer(Answer::eventStream().chunk("one").waitFor(Gate()));
  timed.start(get("/silent"), silent.handlers());
  ASSERT_TRUE(silent.waitForBody("one"));
  server.answer(Answer::eventStream().waitFor(later).chunk("two").waitFor(end).end());
  timed.start(get("/talking"), talking.handlers());
  ASSERT_TRUE(later.waitUntilReached());
  Gate never;
  server.answer(Answer::raw("").waitFor(never));
  HttpRequest longer = get("/patient");
  longer.patience = 120s;
  timed.start(longer, patient.handlers());
  ASSERT_TRUE(never.waitUntilReached());

  turn(59s);
  later.open();
  ASSERT_TRUE(talking.waitForBody("two")) << "a byte at the 59th second";
  EXPECT_FALSE(silent.hasEnded());
  turn(1s);
  ASSERT_TRUE(silent.waitForEnd());
  ASSERT_TRUE(silent.failure);
  EXPECT_EQ(silent.failure->description, "The request timed out.");

  turn(58s);
  end.open();
  ASSERT_TRUE(talking.waitForEnd());
  EXPECT_FALSE(talking.failure) << talking.failure->description;
  EXPECT_FALSE(patient.hasEnded());
  turn(2s);
  EXPECT_TRUE(patient.waitForEnd()) << "two minutes are over";
}

}  // namespace
}  // namespace quillmark
