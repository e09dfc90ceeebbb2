#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "logic/providers/ProviderLab.h"
#include "providers/SSEStreamParser.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* goodAnswer =
    R"({"id":"1","object":"chat.completion","created":1.5,"model":"m","extra":[],)"
    R"("choices":[{"index":0,"message":{"role":"assistant","content":"{{the}} cat"},"finish_reason":"stop"}],)"
    R"("usage":{"prompt_tokens":1,"completion_tokens_details":{"reasoning_tokens":2}}})";

using ChatProvider = ProviderLab;

TEST_F(ChatProvider, leavesOutAnEmptySystemMessageAndUsesUrlAndModelAsTheyAre) {
  const auto provider = base("http://server/v1/");
  const auto seen = stream(*provider);
  EXPECT_EQ(last().request.url, "http://server/v1//chat/completions");
  EXPECT_EQ(parseJson(*last().request.body),
            parseJson(R"({"messages":[{"role":"user","content":"teh cat"}],"model":"m-2","stream":true})"));
  EXPECT_EQ(last().header("Accept"), "application/json");
}

TEST_F(ChatProvider, tellsTheUserWhyARequestFailed) {
  const struct {
    const char* name;
    std::function<void()> respond;
    std::string message;
  } cases[] = {
      {"status", [&] { last().answer(401, "application/json", R"({"error":"bad key"})"); },
       "Response status code was unacceptable: 401."},
      {"connection", [&] { last().fail("Could not connect."); },
       "URLSessionTask failed with error: Could not connect."},
      {"content type", [&] { last().answer(200, "text/html", "<p>"); },
       "Response Content-Type \"text/html\" does not match any acceptable types: application/json."},
      {"no content type", [&] { last().answer(200, std::nullopt, "{}"); },
       "Response Content-Type was missing and acceptable content types (application/json) do not match \"*/*\"."},
      {"empty", [&] { last().answer(200, "text/html", ""); },
       "Response could not be serialized, input data was nil or zero length."},
      {"no content", [&] { last().answer(204, std::nullopt, ""); },
       "Empty response could not be serialized to type: GenericChatResult. Use Empty as the expected type for such "
       "responses."},
      {"not JSON", [&] { last().answerJson("{,"); }, "Response could not be decoded because of error:\n"},
      {"not the record", [&] { last().answerJson(R"({"model":"m","created":1,"choices":[]})"); },
       "Response could not be decoded because of error:\nobject: is missing"},
  };
  for (const auto& [name, respond, message] : cases) {
    EXPECT_EQ(chat(*base(), respond), "(absent)") << name;
    ASSERT_EQ(desktop.alerts.open.size(), 1u) << name;
    EXPECT_EQ(desktop.alerts.open[0].title, "Mine Issue");
    EXPECT_THAT(desktop.alerts.open[0].buttons, ElementsAre("Close"));
    EXPECT_THAT(desktop.alerts.open[0].message, testing::StartsWith(message)) << name;
    desktop.alerts.close();
  }
  EXPECT_EQ(chat(*base("not a url"), [] {}), "(absent)");
  EXPECT_EQ(desktop.alerts.open[0].message, "URL is not valid: not a url/chat/completions");
}

TEST_F(ChatProvider, givesNoAnswerWithoutAnAlertWhenThereIsNone) {
  const auto answerTo = [&](const std::string& choices) {
    return chat(*base(),
                [&] { last().answerJson(R"({"model":"m","object":"o","created":1,"choices":[)" + choices + "]}"); });
  };
  EXPECT_EQ(answerTo(""), "(absent)");
  EXPECT_EQ(answerTo(R"({"index":0,"message":{"role":"assistant","content":null}})"), "(absent)");
  EXPECT_EQ(answerTo(R"({"index":0,"message":{"role":"assistant","content":"{{}}"}})"), "");
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(ChatProvider, streamsPiecesUntilTheEndMark) {
  const auto provider = base();
  const auto seen = stream(*provider);
  last().head(200, "text/event-stream");
  last().bytes(": hello\r\nevent: x\r\ndata: {\"choices\":[{\"delta\":{\"role\":\"assistant\"}}]}\r\n\r\n");
  last().bytes(
      "data: {\"choices\":[{\"delta\":{\"content\":\"{{the\"}}]}\n\n"
      "  data: {\"choices\":[{\"delta\":{\"content\":\" cat\"}}]}\ndata:{\"no\":\"blank\"}\n");
  last().bytes(
      "data: {\"choices\":[{\"delta\":{\"content\":\"}}\"}}]}\ndata: [DONE] \ndata: {\"choices\":[{\"delta\":{"
      "\"content\":\"dropped\"}}]}\n");
  last().bytes("data: {\"choices\":[{\"delta\":{\"content\":\"late\"}}]}\n");
  last().end();
  desktop.queue.settle();
  EXPECT_THAT(seen->pieces, ElementsAre("{{the", " cat", "}}"));
  EXPECT_EQ(seen->whole, "{{the cat}}");
  EXPECT_EQ(seen->completions, 1);
}

TEST_F(ChatProvider, keepsWhatArrivedOfABrokenStreamAndShowsNoAlert) {
  const auto provider = base();
  const auto broken = stream(*provider);
  last().head(200, "text/event-stream");
  last().bytes("data: {\"choices\":[{\"delta\":{\"content\":\"half\"}}]}\ndata: {\"choi");
  last().bytes("ces\":[{\"delta\":{\"content\":\" lost\"}}]}\n");
  last().fail("reset");
  const auto refused = stream(*provider);
  last().answer(401, "application/json", R"({"error":"bad key"})");
  desktop.queue.settle();
  EXPECT_EQ(broken->whole, "half");
  EXPECT_EQ(refused->whole, "(absent)");
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(ChatProvider, listsModelsByTheirBestName) {
  std::optional<std::vector<ProviderModel>> models;
  base()->listModels([&](auto list) { models = std::move(list); });
  EXPECT_EQ(last().request.method, "GET");
  EXPECT_EQ(last().request.url, "http://server/v1/models");
  EXPECT_FALSE(last().request.body.has_value());
  last().answerJson(R"({"data":[{"id":"a"},{"id":"b","display_name":"B"},)"
                    R"({"id":"c","name":"C","display_name":"no","context_length":4096,"enabled":false}]})");
  desktop.queue.settle();
  ASSERT_TRUE(models && models->size() == 3);
  EXPECT_EQ((*models)[0].name, "a");
  EXPECT_EQ((*models)[1].name, "B");
  EXPECT_EQ((*models)[2].name, "C");
  EXPECT_EQ((*models)[2].contextLength, 4096);
  EXPECT_FALSE((*models)[2].enabled.has_value());

  models.emplace();
  base()->listModels([&](auto list) { models = std::move(list); });
  last().answer(500, "application/json", "{}");
  desktop.queue.settle();
  EXPECT_FALSE(models.has_value());
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(ChatProvider, validatesAKeyByAnyAnswer) {
  std::string verdicts;
  const auto provider = base();
  const auto validate = [&] { provider->validateApiKey([&](bool valid) { verdicts += valid ? 'y' : 'n'; }); };
  validate();
  EXPECT_THAT(*last().request.body, HasSubstr("Just return True if API key is valid"));
  last().answerJson(goodAnswer);
  validate();
  last().answer(401, "application/json", "{}");
  validate();
  last().answerJson(text::replacingAll(goodAnswer, "{{the}} cat", "{{}}"));
  desktop.queue.settle();
  EXPECT_EQ(verdicts, "ynn") << "an empty answer is none";
}

TEST_F(ChatProvider, ofTheHostedServiceCanBeAnsweredByALocalOne) {
  desktop.defaults.set("useLocalApi", true);
  desktop.defaults.set("serviceToken", " t ");
  EXPECT_EQ(chat(*hosted(), [&] { last().answerJson(goodAnswer); }), "the cat");
  EXPECT_EQ(last().request.url, "http://127.0.0.1:3999/api/app/completion");
  EXPECT_EQ(last().header("Authorization"), "Bearer  t ");
  EXPECT_THAT(*last().request.body, HasSubstr("gpt-4.1-mini"));
  EXPECT_EQ(chat(*hosted(), [&] { last().answer(503, std::nullopt, ""); }), "(absent)");
  EXPECT_EQ(desktop.alerts.open[0].title, "Unknown Error");
}

TEST_F(ChatProvider, ofTheHostedServiceStreamsPlainText) {
  const auto provider = hosted();
  const auto seen = stream(*provider);
  last().head(200, "text/plain");
  last().bytes("one\\ntwo\\t\\rthree\\");
  last().bytes("n [DONE] gr\xC3");
  last().bytes("\xBCn");
  last().end();
  desktop.queue.settle();
  EXPECT_THAT(seen->pieces, ElementsAre("one\ntwo\t\rthree\\", "n [DONE] gr\uFFFD", "\uFFFDn"));
  EXPECT_EQ(seen->whole, "one\ntwo\t\rthree\\n [DONE] gr\uFFFD\uFFFDn");
}

TEST(StreamPayloads, giveTextOnlyFromTheirOneForm) {
  EXPECT_EQ(SSEStreamParser::parseContent(R"({"choices":[{"delta":{"content":""}},{}]})"), "");
  for (const char* payload :
       {"", "[]", "{}", R"({"choices":{}})", R"({"choices":[]})", R"({"choices":[1]})", R"({"choices":[{"delta":[]}]})",
        R"({"choices":[{"delta":{"content":null}}]})", R"({"choices":[{"delta":{"content":1}}]})",
        R"({"choices":[{"delta":{"content":"x"}},7]})", R"({"error":{"message":"no"}})",
        R"({"choices":[{"delta":{"content":"x"}}]} trailing)"}) {
    EXPECT_EQ(SSEStreamParser::parseContent(payload), std::nullopt) << payload;
  }
}

TEST(Urls, areCheckedByForm) {
  EXPECT_TRUE(isValidUrl("https://host:8080/v1/chat?api-version=1&x=%20"));
  for (const char* url :
       {"", "http://a b", "https://<YOUR-RESOURCE-NAME>.example.com", "http://a/%zz", "http://\u00fc/"}) {
    EXPECT_FALSE(isValidUrl(url)) << url;
  }
}

}  // namespace
}  // namespace quillmark
