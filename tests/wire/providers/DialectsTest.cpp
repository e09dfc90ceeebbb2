#include <gmock/gmock.h>

#include "support/TestHttpServer.h"
#include "support/TlsFront.h"
#include "wire/providers/ProviderWire.h"

namespace quillmark {
namespace {

using testing::HasSubstr;

/// How one server answers a chat, whole and as a stream.
struct Dialect {
  ProviderType type;
  std::string (*whole)(const std::string& text);
  std::string (*event)(const std::string& text);  ///< a piece of a stream
  const char* end;                                ///< after the last piece
};

std::string completion(const std::string& text, const char* finishReason = nullptr) {
  Json choice = {{"index", 0}, {"message", {{"role", "assistant"}, {"content", text}}}};
  Json result = {{"id", "1"}, {"model", "m"}, {"object", "chat.completion"}, {"created", 1}};
  if (finishReason != nullptr) {
    choice["finish_reason"] = finishReason;
    result["system_fingerprint"] = "f";
  }
  result["choices"] = Json::array({choice});
  return toText(result);
}

std::string dataLine(const Json& event) { return "data: " + toText(event) + "\n\n"; }

const Dialect dialects[] = {
    {ProviderType::openAICompatible, [](const std::string& text) { return completion(text); },
     [](const std::string& text) {
       return dataLine({{"choices", Json::array({{{"index", 0}, {"delta", {{"content", text}}}}})}});
     },
     "data: [DONE]\n\n"},
    {ProviderType::openAI, [](const std::string& text) { return completion(text, "stop"); },
     [](const std::string& text) {
       return dataLine({{"id", "1"},
                        {"object", "chunk"},
                        {"created", 1},
                        {"model", "m"},
                        {"system_fingerprint", "f"},
                        {"choices", Json::array({{{"index", 0}, {"delta", {{"content", text}}}}})}});
     },
     "data: [DONE]\n\n"},
    {ProviderType::anthropic,
     [](const std::string& text) {
       return toText({{"id", "1"},
                      {"type", "message"},
                      {"model", "m"},
                      {"role", "assistant"},
                      {"content", Json::array({{{"type", "text"}, {"text", text}}})},
                      {"usage", {{"output_tokens", 1}}}});
     },
     [](const std::string& text) {
       return "event: content_block_delta\n" + dataLine({{"type", "content_block_delta"}, {"delta", {{"text", text}}}});
     },
     "event: message_stop\ndata: {\"type\": \"message_stop\"}\n\n"},
    {ProviderType::quillMark, [](const std::string& text) { return completion(text); },
     [](const std::string& text) { return text; }, ""},
};

/// Every dialect over real sockets and, where the address says https, over TLS with an authority of the test's own.
struct Dialects : ProviderWire {
  TestHttpServer server;
};

TEST_F(Dialects, callBackOnTheThreadsTheyPromise) {
  const auto mainThread = std::this_thread::get_id();
  const std::string models = R"({"object":"list","data":[{"id":"a","created":1,"object":"model","owned_by":"o"}]})";
  for (const auto& dialect : dialects) {
    const auto provider = make(dialect.type, server.port());
    server.answer(Answer::json(200, dialect.whole("cat")));
    std::atomic<int> answers = 0;
    std::thread::id chatThread;
    provider->chat("teh", "", std::nullopt, [&](const auto& answer) {
      EXPECT_EQ(answer, "cat");
      chatThread = std::this_thread::get_id();
      ++answers;
    });
    ASSERT_TRUE(run([&] { return answers == 1; }));
    const bool hasOwnClient = dialect.type == ProviderType::openAI || dialect.type == ProviderType::anthropic;
    EXPECT_EQ(chatThread != mainThread, hasOwnClient) << info(dialect.type).displayName;

    server.answer(Answer::eventStream().chunk(dialect.event("cat")).chunk(dialect.end).end());
    server.answer(Answer::json(200, models));
    const auto expectMain = [&] {
      EXPECT_EQ(std::this_thread::get_id(), mainThread) << info(dialect.type).displayName;
    };
    bool streamed = false;
    provider->streamChat(
        "teh", "", std::nullopt, [&](const auto&) { expectMain(); },
        [&](const auto& whole) {
          expectMain();
          EXPECT_EQ(whole, "cat");
          streamed = true;
        });
    ASSERT_TRUE(run([&] { return streamed; }));
    bool listed = false;
    provider->listModels([&](const auto& list) {
      expectMain();
      EXPECT_TRUE(list && list->size() == 1);
      listed = true;
    });
    ASSERT_TRUE(run([&] { return listed; }));
  }
}

TEST_F(Dialects, ofTheVendorsAreSpokenOverTls) {
  const TlsFront front(server.port());
  CurlHttpSession trusting({.caBundle = front.authority()});
  HttpTransport secured{trusting, queue, {"quillmark", "org.quillmark", "2.13.0", "7"}, {"Linux", 6, 1, 0}, locale};
  for (const auto& dialect : dialects) {
    if (dialect.type == ProviderType::quillMark) {
      continue;
    }
    server.answer(Answer::json(200, dialect.whole("cat")));
    server.answer(
        Answer::eventStream().chunk(dialect.event("one ")).chunk(dialect.event("two")).chunk(dialect.end).end());
    const auto distrustful = make(dialect.type, front.port(), "", key, "https");
    const auto provider = ProviderFactory({secured, trusting, queue, alertHandler, defaults, *localConfig,
                                           OpenAIClient::Configuration{.host = "127.0.0.1", .port = front.port()}})
                              .makeProvider(distrustful->config());
    const auto whole = chat(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(whole));
    EXPECT_EQ(whole->whole, "cat") << info(dialect.type).displayName;
    const auto streamed = stream(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(streamed));
    EXPECT_EQ(streamed->whole, "one two");
    EXPECT_TRUE(alerts.shown.empty());

    // Without that authority the key never leaves the program.
    const auto before = server.waitForRequests(0).size();
    const auto refused = chat(*distrustful, "teh cat");
    ASSERT_TRUE(runToEnd(refused) && run([&] { return !alerts.shown.empty(); }));
    EXPECT_THAT(alerts.shown[0].message, HasSubstr("could not be verified"));
    EXPECT_EQ(server.waitForRequests(0).size(), before);
    alerts.shown.clear();
  }
}

TEST_F(Dialects, copeWithTenMegabytes) {
  setLogSink([](std::string_view) {});  // which would log whole answers
  const std::string large(10'000'000, 'x');
  const std::string piece(20'000, 'x');
  for (const auto& dialect : dialects) {
    const auto provider = make(dialect.type, server.port());
    server.answer(Answer::json(200, dialect.whole(large)));
    const auto whole = chat(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(whole));
    EXPECT_TRUE(whole->whole == large) << info(dialect.type).displayName << whole->whole.size();

    auto answer = Answer::eventStream();
    for (std::size_t size = 0; size < large.size(); size += piece.size()) {
      std::move(answer).chunk(dialect.event(piece));
    }
    server.answer(std::move(answer).chunk(dialect.end).end());
    const auto streamed = stream(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(streamed));
    if (dialect.type == ProviderType::openAICompatible) {
      EXPECT_THAT(streamed->pieces, testing::Each(piece)) << "a line that the network cuts is lost, whole";
    } else {
      EXPECT_TRUE(streamed->whole == large) << info(dialect.type).displayName << streamed->whole.size();
    }
  }
  setLogSink({});
  EXPECT_TRUE(alerts.shown.empty());
}

}  // namespace
}  // namespace quillmark
