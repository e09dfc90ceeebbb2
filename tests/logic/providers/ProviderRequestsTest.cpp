#include <gmock/gmock.h>

#include "logic/providers/ProviderLab.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

constexpr const char* session =
    "Accept-Encoding: br;q=1.0, gzip;q=0.9, deflate;q=0.8\nAccept-Language: en-GB;q=1.0, de-DE;q=0.9\n"
    "User-Agent: quillmark/2.13.0 (id; build:Unknown; Linux 6.1.0) simulated/1.0\n";
constexpr const char* bearer = "Authorization: Bearer s3cret\nAccept: application/json\n";
constexpr const char* hostedBearer = "Authorization: Bearer t0ken \nAccept: application/json\nX-AppVersion: 2.13.0\n";
constexpr const char* json = "Content-Type: application/json\n";

/// What one class sends: URLs, headers and the body of a chat with the model "m".
struct Sent {
  ProviderType type;
  std::string chatUrl;
  std::string modelsUrl;  ///< empty: no request at all
  std::string chatHeaders;
  std::string modelsHeaders;
  std::string chatBody = R"({"messages":[{"role":"system","content":"fix"},{"role":"user","content":"teh"}],)"
                         R"("model":"m","stream":STREAM})";
};

std::vector<Sent> expectations() {
  using enum ProviderType;
  const std::string chat = std::string(bearer) + json + session;
  const std::string models = std::string(bearer) + session;
  std::vector<Sent> all;
  for (const auto type : {openAICompatible, xAI, mistral, deepSeek, perplexity, groq, ollama, openRouter, togetherAI}) {
    all.push_back({type, "http://server/v1/chat/completions", "http://server/v1/models", chat, models});
  }
  all.push_back({azureOpenAI, "http://server/v1", "", chat, ""});
  all.push_back({googleAI, "http://server/v1/openai/chat/completions", "http://server/v1/openai/models", chat, models});
  const std::string root = AppConfig::publicRoot;
  all.push_back({quillMark, root + "/api/app/completion", root + "/api/app/models",
                 std::string(hostedBearer) + json + session, std::string(hostedBearer) + session});
  const std::string openAIHeaders =
      "Content-Type: application/json\nAuthorization: Bearer s3cret\nOpenAI-Organization: org\n";
  const std::string openAIRoot = std::string("https://") + info(openAI).defaultBaseURL + "/v1";
  all.push_back({openAI, openAIRoot + "/chat/completions", openAIRoot + "/models", openAIHeaders, openAIHeaders});
  all.push_back({anthropic, "http://server/v1/messages", "http://server/v1/v1/models",
                 "Content-Type: application/json\nx-api-key:  s3cret\n\nanthropic-version: 2023-06-01\n",
                 std::string("x-api-key: s3cret\nanthropic-version: 2023-06-01\nAccept: application/json\n") + session,
                 R"({"max_tokens":4096,"messages":[{"role":"user","content":"teh"}],"model":"m","system":"fix",)"
                 R"("stream":STREAM})"});
  return all;
}

std::string listed(const std::vector<HttpHeader>& headers) {
  std::string all;
  for (const auto& [name, value] : headers) {
    all += name + ": ";
    all += value + "\n";
  }
  return all;
}

struct ProviderRequests : ProviderLab {
  ProviderRequests() {
    desktop.defaults.set("serviceToken", "t0ken ");
    desktop.defaults.set("appVersion", "2.13.0");
  }
  std::unique_ptr<AIProvider> make(ProviderType type, const std::string& model = "m") {
    ProviderConfig config = configOf(type, model);
    config.organization = "org";
    return factory.makeProvider(config);
  }
};

TEST_F(ProviderRequests, areJustTheseForEachClass) {
  const auto all = expectations();
  ASSERT_EQ(all.size(), allCases<ProviderType>().size());
  for (const auto& sent : all) {
    const std::string name = info(sent.type).displayName;
    const auto provider = make(sent.type);
    EXPECT_EQ(provider->providerType(), sent.type);
    for (const bool stream : {false, true}) {
      stream ? provider->streamChat(
                   "teh", "fix", std::nullopt, [](const auto&) {}, [](const auto&) {})
             : provider->chat("teh", "fix", std::nullopt, [](const auto&) {});
      EXPECT_EQ(last().request.method, "POST") << name;
      EXPECT_EQ(last().request.url, sent.chatUrl) << name;
      EXPECT_EQ(listed(last().request.headers), sent.chatHeaders) << name;
      EXPECT_EQ(parseJson(*last().request.body),
                parseJson(text::replacingAll(sent.chatBody, "STREAM", stream ? "true" : "false")))
          << name;
      EXPECT_EQ(last().request.patience.count(), sent.type == ProviderType::openAI ? 120 : 60) << name;
    }
    const auto before = desktop.http.exchanges.size();
    std::optional<bool> listedAny;
    provider->listModels([&](const auto& models) { listedAny = models.has_value(); });
    if (sent.modelsUrl.empty()) {
      EXPECT_EQ(desktop.http.exchanges.size(), before) << name;
      EXPECT_EQ(listedAny, false) << name;
      continue;
    }
    EXPECT_EQ(last().request.method, "GET") << name;
    EXPECT_EQ(last().request.url, sent.modelsUrl) << name;
    EXPECT_EQ(listed(last().request.headers), sent.modelsHeaders) << name;
    EXPECT_FALSE(last().request.body) << name;
  }
}

TEST_F(ProviderRequests, ofGoogleNameModelsWithoutTheirPrefix) {
  for (const auto& [model, sent] : {std::pair("models/gemini-1.5-pro", "gemini-1.5-pro"), {"gemma", "gemma"}}) {
    make(ProviderType::googleAI, model)->chat("teh", "", std::nullopt, [](const auto&) {});
    EXPECT_EQ(parseJson(*last().request.body).at("model"), sent);
  }
}

TEST_F(ProviderRequests, leaveOutWhatIsEmptyAndSendWhatIsMissing) {
  ProviderConfig config = configOf(ProviderType::openAI, "");
  config.apiKey = "";
  factory.makeProvider(config)->listModels([](const auto&) {});
  EXPECT_EQ(listed(last().request.headers), "Content-Type: application/json\nAuthorization: Bearer \n");
  make(ProviderType::anthropic)->chat("teh", "", "other", [](const auto&) {});
  EXPECT_EQ(parseJson(*last().request.body).at("system"), "");
  EXPECT_EQ(parseJson(*last().request.body).at("model"), "other");
  make(ProviderType::ollama, "")->chat("teh", "", std::nullopt, [](const auto&) {});
  EXPECT_EQ(parseJson(*last().request.body).at("model"), "");
}

TEST_F(ProviderRequests, toAnthropicReplaceThePathOfTheAddress) {
  for (const auto& [base, url] : {std::pair("https://host", "https://host/v1/messages"),
                                  {"https://host:8443/proxy/?a=b", "https://host:8443/v1/messages?a=b"}}) {
    ProviderConfig config = configOf(ProviderType::anthropic, "m");
    config.baseURL = base;
    factory.makeProvider(config)->chat("teh", "", std::nullopt, [](const auto&) {});
    EXPECT_EQ(last().request.url, url);
  }
}

TEST_F(ProviderRequests, ofTogetherListOnlyWhatChats) {
  const auto listing = [&](const std::string& body) {
    std::vector<std::string> names{"(absent)"};
    make(ProviderType::togetherAI)->listModels([&](const auto& models) {
      if (models) {
        names.clear();
        std::ranges::transform(*models, std::back_inserter(names), &ProviderModel::identifier);
      }
    });
    last().answerJson(body);
    desktop.queue.settle();
    return names;
  };
  EXPECT_THAT(listing(R"([{"id":"a","type":"chat"},{"id":"b"},{"id":"c","type":"image"},{"id":"d","type":"chat"}])"),
              ElementsAre("a", "d"));
  EXPECT_THAT(listing(R"([{"id":"b"}])"), ElementsAre());
  EXPECT_THAT(listing(R"({"data":[{"id":"a","type":"chat"}]})"), ElementsAre("(absent)"));
}

TEST_F(ProviderRequests, ofAzureAndGoogleReadWhatTheirServersSend) {
  ProviderConfig azure = configOf(ProviderType::azureOpenAI, "m");
  azure.baseURL = info(ProviderType::azureOpenAI).defaultBaseURL;
  EXPECT_EQ(chat(*factory.makeProvider(azure)), "(absent)");
  EXPECT_EQ(desktop.alerts.open[0].message, std::string("URL is not valid: ") + azure.baseURL);
  desktop.alerts.close();

  const auto google = make(ProviderType::googleAI);
  EXPECT_EQ(chat(*google,
                 [&] {
                   last().answerJson(R"({"object":"o","created":1,"model":"m","provider":7,"choices":[)"
                                     R"({"index":0,"message":{"role":"model","content":"{{the}}"}}]})");
                 }),
            "the");
  EXPECT_EQ(chat(*google, [&] { last().answerJson(R"({"created":1,"model":"m","choices":[]})"); }), "(absent)");
  EXPECT_EQ(desktop.alerts.open[0].message, "Response could not be decoded because of error:\nobject: is missing");
}

}  // namespace
}  // namespace quillmark
