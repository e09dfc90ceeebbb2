#include <gmock/gmock.h>

#include "logic/providers/ProviderLab.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// The two vendors whose API has a client of its own.
struct VendorClients : ProviderLab {
  std::unique_ptr<AIProvider> openAI() { return factory.makeProvider(configOf(ProviderType::openAI, "m")); }
  std::unique_ptr<AIProvider> anthropic() { return factory.makeProvider(configOf(ProviderType::anthropic, "m")); }

  /// One alert was shown: "title: message". Closes it.
  std::string alert() {
    desktop.queue.settle();
    if (desktop.alerts.open.size() != 1) {
      return std::to_string(desktop.alerts.open.size()) + " alerts";
    }
    std::string shown = desktop.alerts.open[0].title + ": ";
    shown += desktop.alerts.open[0].message;
    desktop.alerts.close();
    desktop.queue.settle();
    return shown;
  }
};

std::string openAIResult(const std::string& choices, const std::string& more = R"("system_fingerprint":"f",)") {
  return R"({"id":"1","object":"chat.completion","created":1,"model":"m",)" + more + R"("choices":[)" + choices + "]}";
}

std::string openAIChoice(const std::string& content, const std::string& more = R"(,"finish_reason":"stop")") {
  return R"({"index":0,"message":{"role":"assistant","content":)" + content + "}" + more + "}";
}

std::string anthropicResult(const std::string& content) {
  return R"({"id":"1","type":"message","model":"m","role":"assistant","content":[)" + content +
         R"(],"usage":{"output_tokens":3}})";
}

TEST_F(VendorClients, ofOpenAILookAtTheBodyAndNotAtTheStatus) {
  const auto provider = openAI();
  EXPECT_EQ(chat(*provider, [&] { last().answerJson(openAIResult(openAIChoice("\"{{the}} cat\""))); }), "the cat");
  EXPECT_EQ(chat(*provider, [&] { last().answer(500, std::nullopt, openAIResult(openAIChoice("\"cat\""))); }), "cat");
  EXPECT_TRUE(desktop.alerts.shown.empty());

  const struct {
    int status;
    std::string body;
    std::string message;
  } cases[] = {
      {401, R"({"error":{"message":"Bad key.","type":"t","param":null,"code":"c"}})", "Bad key."},
      {400, R"({"error":{"message":["One.","Two."],"type":"t"}})", "One.\nTwo."},
      {400, R"([{"error":{"code":400,"message":"Bad model.","status":"INVALID"}},7])", "is not an object"},
      {400, R"([{"error":{"code":400,"message":"Bad model.","status":"INVALID"}}])", "Bad model."},
      {400, "[]", "is not an object"},
      {500, "<html>", "is not valid JSON"},
      {200, "", "emptyData"},
      {200, openAIResult(openAIChoice("\"x\"", "")), "choices[0].finish_reason: is missing"},
      {200, openAIResult(openAIChoice("\"x\""), ""), "system_fingerprint: is missing"},
      {200, openAIResult(openAIChoice("7")), "choices[0].message.content: "},
  };
  for (const auto& [status, body, message] : cases) {
    log.clear();
    EXPECT_EQ(chat(*provider, [&, code = status, &text = body] { last().answer(code, "text/html", text); }),
              "(absent)");
    const std::string shown = alert();
    EXPECT_THAT(shown, StartsWith("Mine Issue: ")) << body;
    EXPECT_THAT(shown, HasSubstr(message)) << body;
    EXPECT_THAT(log, HasSubstr(message)) << body;
  }
  EXPECT_EQ(chat(*provider, [&] { last().fail("No network."); }), "(absent)");
  EXPECT_EQ(alert(), "Mine Issue: No network.");
}

TEST_F(VendorClients, giveNoAnswerWithoutAnAlertWhenThereIsNone) {
  for (const auto& choices : {std::string(), openAIChoice("null"), openAIChoice("\"\"")}) {
    log.clear();
    EXPECT_EQ(chat(*openAI(), [&] { last().answerJson(openAIResult(choices)); }), "(absent)");
    EXPECT_THAT(log, StartsWith("Message is empty "));
  }
  for (const char* content : {"", R"({"type":"tool_use","id":"1","input":{}},{"type":"text","text":"x"})"}) {
    EXPECT_EQ(chat(*anthropic(), [&] { last().answerJson(anthropicResult(content)); }), "(absent)");
  }
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(VendorClients, ofOpenAIStreamPieceByPiece) {
  const auto event = [](const std::string& choices) {
    return R"(data: {"id":"1","object":"o","created":1,"model":"m","system_fingerprint":"f","choices":[)" + choices +
           "]}\n\n";
  };
  const auto delta = [](const char* content) {
    return std::string(R"({"index":0,"delta":{"content":)") + content + "}}";
  };
  const auto provider = openAI();
  const auto seen = stream(*provider);
  last().head(200, std::nullopt);
  last().bytes(": hi\nid: 4\n" + event(delta("\"{{\"")) + event(delta("\"a}}\"")) + event(delta("null")) + event("") +
               event(delta("\"b\"")));
  last().end();
  desktop.queue.settle();
  EXPECT_THAT(seen->pieces, ElementsAre("", "a", "b"));
  EXPECT_EQ(seen->whole, "ab") << "it needs no end mark";

  const std::pair<std::string, std::string> failures[] = {
      {"event: error\ndata: {}\n\n", "The stream has an event of an unknown type: error"},
      {"data: {}\n\n", "id: is missing"},
      {"data: {\n\n", "is not valid JSON"},
      {event(R"({"index":0})"), "choices[0].delta: is missing"},
  };
  for (const auto& [bytes, message] : failures) {
    const auto broken = stream(*provider);
    last().head(200, std::nullopt);
    last().bytes(event(delta("\"half\"")) + bytes + event(delta("\"late\"")));
    EXPECT_THAT(alert(), testing::AllOf(StartsWith("Mine Issue: "), HasSubstr(message)));
    last().fail("reset");
    desktop.queue.settle();
    EXPECT_THAT(broken->pieces, ElementsAre("half"));
    EXPECT_EQ(broken->whole, "(absent)") << "what came before is dropped";
    EXPECT_EQ(broken->completions, 1);
  }
  EXPECT_THAT(log, HasSubstr("Streaming error: id: is missing"));
}

TEST_F(VendorClients, ofOpenAIDropAStreamThatWasRefused) {
  const auto refused = stream(*openAI());
  EXPECT_FALSE(last().head(401, "application/json")) << "the body is not wanted";
  last().end();
  const std::string url = std::string("https://") + info(ProviderType::openAI).defaultBaseURL + "/v1/chat/completions";
  EXPECT_EQ(alert(), "Mine Issue: statusError(response: HTTP 401 from " + url + ", statusCode: 401)");
  EXPECT_EQ(refused->whole, "(absent)");
  const auto broken = stream(*openAI());
  EXPECT_TRUE(last().head(302, std::nullopt));
  last().fail("No network.");
  EXPECT_EQ(alert(), "Mine Issue: No network.");
  EXPECT_EQ(broken->completions, 1);
}

TEST_F(VendorClients, ofOpenAIListModelsOrSayWhyNot) {
  std::optional<std::vector<ProviderModel>> models;
  const auto list = [&](const std::string& body) {
    models.reset();
    openAI()->listModels([&](auto listing) { models = std::move(listing); });
    last().answerJson(body);
    EXPECT_FALSE(models) << "the answer comes through the queue";
    desktop.queue.settle();
  };
  list(R"({"object":"list","data":[{"id":"whisper-1","created":1.5,"object":"model","owned_by":"o"}]})");
  ASSERT_TRUE(models && models->size() == 1) << "nothing is filtered here";
  EXPECT_EQ(models->front().name, "whisper-1");
  EXPECT_EQ(models->front().providerType, ProviderType::openAI);
  list(R"({"object":"list","data":[{"id":"a"}]})");
  EXPECT_EQ(alert(), "Mine Issue: data[0].created: is missing");
  EXPECT_FALSE(models);
}

TEST_F(VendorClients, ofAnthropicTakeNoStatusBut200) {
  const auto provider = anthropic();
  EXPECT_EQ(chat(*provider,
                 [&] {
                   last().answer(200, std::nullopt, anthropicResult(R"({"type":"text","text":"{{x}}"},{"type":7},"")"));
                 }),
            "{{x}}")
      << "braces stay, and later blocks are not looked at";
  const struct {
    int status;
    std::string body;
    std::string message;
  } cases[] = {
      {401, R"({"type":"error","error":{"type":"auth","message":"invalid key"}})", "status code 401invalid key"},
      {401, R"({"error":"x"})", "status code 401"},
      {529, "", "status code 529"},
      {201, anthropicResult(R"({"type":"text","text":"x"})"), "status code 201"},
      {200, R"({"id":"1","type":"message","model":"m","role":"r","content":[],"usage":{}})",
       "usage.output_tokens: is missing"},
      {200, anthropicResult(R"({"type":"text"})"), "content[0].text: is missing"},
      {200, "", "is not valid JSON"},
  };
  for (const auto& [status, body, message] : cases) {
    for (const bool streams : {false, true}) {
      if (streams && status == 200) {
        continue;
      }
      log.clear();
      const auto respond = [&, code = status, &text = body] { last().answer(code, "application/json", text); };
      if (streams) {
        const auto seen = stream(*provider);
        respond();
        EXPECT_THAT(alert(), StartsWith("Anthropic Issue: " + message)) << "whatever its configuration is called";
        EXPECT_EQ(seen->whole, "(absent)");
      } else {
        EXPECT_EQ(chat(*provider, respond), "(absent)");
        EXPECT_THAT(alert(), StartsWith("Anthropic Issue: " + message));
      }
      EXPECT_THAT(log, HasSubstr("Error: " + message));
    }
  }
  EXPECT_EQ(chat(*provider, [&] { last().fail("No network."); }), "(absent)");
  EXPECT_EQ(alert(), "Anthropic Issue: No network.");
}

TEST_F(VendorClients, ofAnthropicStreamWhatHasText) {
  const auto provider = anthropic();
  const auto seen = stream(*provider);
  last().head(200, "text/event-stream");
  last().bytes(
      "event: ping\ndata: {\"type\": \"ping\"}\n\ndata:{\"type\":\"x\",\"delta\":{\"text\":\"{{a\"}}\r\n"
      "data: {\"type\":\"content_block_delta\",\"delta\":{\"partial_json\":\"no\"}}\n"
      "data: {\"type\":\"content_block_delta\",\"delta\":{\"text\":\"b\"}}");
  last().end();
  desktop.queue.settle();
  EXPECT_THAT(seen->pieces, ElementsAre("{{a", "b")) << "the last line needs no end";
  EXPECT_EQ(seen->whole, "{{ab");

  const auto broken = stream(*provider);
  last().head(200, "text/event-stream");
  last().bytes(
      "data: {\"type\":\"x\",\"delta\":{\"text\":\"half\"}}\ndata: {\n"
      "data: {\"type\":\"x\",\"delta\":{\"text\":\"late\"}}\n");
  last().end();
  EXPECT_THAT(alert(), testing::AllOf(StartsWith("Anthropic Issue: "), HasSubstr("is not valid JSON")));
  EXPECT_THAT(broken->pieces, ElementsAre("half"));
  EXPECT_EQ(broken->whole, "(absent)");
  EXPECT_EQ(broken->completions, 1);
}

}  // namespace
}  // namespace quillmark
