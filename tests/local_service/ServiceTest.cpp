#include <atomic>
#include <thread>

#include <httplib.h>

#include "commands/CommandTemplate.h"
#include "local-service/Service.h"
#include "support/TestHttpServer.h"

namespace quillmark::service {
namespace {

using namespace std::chrono_literals;

constexpr const char* grammar = "Act like you are an expert grammar checker. Look for mistakes.";

/// The service on a free port, serving until the end of the test.
class RunningService {
 public:
  explicit RunningService(Service::Settings settings = {0, 0ms, "9.9", std::nullopt})
      : service_(std::move(settings)), server_([this] { service_.run(); }) {}
  ~RunningService() {
    service_.stop();
    server_.join();
  }

  httplib::Client client() const {
    httplib::Client client("127.0.0.1", service_.port());
    client.set_read_timeout(60);
    return client;
  }
  std::string url() const { return "http://127.0.0.1:" + std::to_string(service_.port()); }
  void stop() { service_.stop(); }

 private:
  Service service_;
  std::thread server_;
};

std::string completionBody(std::string_view system, std::string_view text, bool stream) {
  return toText(Json{
      {"messages", Json::array({{{"role", "system"}, {"content", system}}, {{"role", "user"}, {"content", text}}})},
      {"model", "some-model"},
      {"stream", stream}});
}

httplib::Result ask(const RunningService& service, const std::string& body) {
  return service.client().Post("/api/app/completion", {{"Accept", "application/json"}, {"Accept-Encoding", "br, gzip"}},
                               body, "application/json");
}

std::string answerIn(const httplib::Result& result) {
  return parseJson(result->body).at("choices").at(0).at("message").at("content");
}

TEST(LocalService, answersACompletionInTheFormOfTheHostedOne) {
  const RunningService service;
  const auto result = ask(service, completionBody(grammar, "teh cat\n", false));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->status, 200);
  EXPECT_TRUE(result->get_header_value("Content-Type").starts_with("application/json"));
  const Json answer = parseJson(result->body);
  EXPECT_EQ(answer.at("model"), "some-model");
  EXPECT_TRUE(answer.at("object").is_string());
  EXPECT_TRUE(answer.at("created").is_number());
  EXPECT_EQ(answer.at("choices").at(0).at("index"), 0);
  EXPECT_EQ(answer.at("choices").at(0).at("message").at("content"), "the cat\n");
  EXPECT_TRUE(answer.at("usage").at("total_tokens").is_number_integer());
}

TEST(LocalService, streamsPlainTextInChunks) {
  const RunningService service;
  std::string text;
  std::string expected;
  for (int i = 0; i < 200; ++i) {
    text += "teh cat\tsat\r\n";
    expected += "the cat\\tsat\\r\\n";
  }
  std::string received;
  int pieces = 0;
  auto client = service.client();
  httplib::Request request;
  request.method = "POST";
  request.path = "/api/app/completion";
  request.body = completionBody(grammar, text, true);
  request.set_header("Accept-Encoding", "br;q=1.0, gzip;q=0.9");
  request.set_header("Content-Type", "application/json");
  request.content_receiver = [&](const char* data, std::size_t size, std::uint64_t, std::uint64_t) {
    ++pieces;
    received.append(data, size);
    return true;
  };
  const auto result = client.send(request);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->get_header_value("Transfer-Encoding"), "chunked");
  EXPECT_FALSE(result->has_header("Content-Encoding")) << "a compressor would hold the stream back";
  EXPECT_EQ(received, expected);
  EXPECT_GT(pieces, 1);
}

TEST(LocalService, refusesWhatIsNoRequestInJson) {
  const RunningService service;
  for (const std::string body :
       {"", "{", "[]", R"({"model":"x"})", R"({"messages":"x"})", R"({"messages":[]})",
        R"({"messages":[{"role":"user"}]})", R"({"messages":[{"role":"system","content":"x"}]})",
        R"({"messages":[{"role":"user","content":"x"}],"stream":"yes"})"}) {
    const auto result = ask(service, body);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400) << body;
    EXPECT_FALSE(parseJson(result->body).at("error").at("message").get<std::string>().empty());
  }
  const auto missing = service.client().Get("/nowhere");
  EXPECT_EQ(missing->status, 404);
  EXPECT_TRUE(parseJson(missing->body).contains("error"));
}

TEST(LocalService, servesTheRestOfTheContract) {
  const RunningService service;
  auto client = service.client();
  EXPECT_TRUE(parseJson(client.Get("/api/app/models")->body).at("data").at(0).at("id").is_string());
  const Json version = parseJson(client.Get("/api/app/version")->body);
  EXPECT_EQ(version.at("version"), "9.9");
  EXPECT_EQ(version.at("updateUrl"), service.url() + "/download");
  const auto counted = client.Post("/api//app/statistics", R"({"statistics":{},"osVersion":"x"})", "application/json");
  EXPECT_EQ(parseJson(counted->body).at("success"), true);
  EXPECT_EQ(client.Post("/api//app/statistics", "{}", "application/json")->status, 400);
  for (const auto* path : {"/download", "/changelog"}) {
    EXPECT_EQ(client.Get(path)->status, 200) << path;
  }
  const Json all = parseJson(client.Get("/api/prompts")->body);
  ASSERT_FALSE(all.empty());
  for (const auto& record : all) {
    EXPECT_EQ(commandTemplateFromJson(record).slug, record.at("slug")) << "the program can read it";
    EXPECT_EQ(parseJson(client.Get("/api/prompts/" + record.at("slug").get<std::string>())->body), record);
  }
  EXPECT_EQ(client.Get("/api/prompts/unheard-of")->status, 404);
}

TEST(LocalService, answersManyAtOnce) {
  const RunningService service;
  std::atomic<int> right{0};
  std::vector<std::thread> callers;
  for (int caller = 0; caller < 8; ++caller) {
    callers.emplace_back([&, caller] {
      for (int i = 0; i < 10; ++i) {
        const auto number = " #" + std::to_string(caller * 10 + i);
        const auto result = ask(service, completionBody(grammar, "teh documnet" + number, false));
        right += result && answerIn(result) == "the document" + number ? 1 : 0;
      }
    });
  }
  for (auto& caller : callers) {
    caller.join();
  }
  EXPECT_EQ(right, 80);
}

TEST(LocalService, stopsWhileARequestWaits) {
  RunningService service({0, 10min, "1", std::nullopt});
  std::thread caller([&] { ask(service, completionBody(grammar, "teh", false)); });
  service.stop();
  caller.join();
}

struct WithUpstream : testing::Test {
  TestHttpServer upstream;
  RunningService service{{0, 0ms, "1", Upstream::Settings{upstream.url("/v1/"), "k3y", "big"}}};
};

TEST_F(WithUpstream, aCompletionPassesThrough) {
  upstream.answer(Answer::json(200, R"({"choices":[{"index":0,"message":{"role":"assistant","content":"Hallo"}}]})"));
  const auto result = ask(service, completionBody("Translate", "Hello", false));
  ASSERT_TRUE(result);
  EXPECT_EQ(answerIn(result), "Hallo");
  EXPECT_TRUE(parseJson(result->body).at("created").is_number()) << "what readers rely on is filled in";
  const auto request = upstream.waitForRequests(1).at(0);
  EXPECT_EQ(request.target, "/v1/chat/completions");
  EXPECT_EQ(request.header("Authorization"), "Bearer k3y");
  EXPECT_EQ(parseJson(request.body).at("model"), "big");
  EXPECT_EQ(parseJson(request.body).at("messages").at(1).at("content"), "Hello");
}

TEST_F(WithUpstream, anEventStreamBecomesPlainText) {
  upstream.answer(
      Answer::eventStream()
          .chunk(": hello\r\n\r\ndata: {\"choices\":[{\"delta\":{\"role\":\"assistant\"}}]}\r\n\r\n")
          .chunk("data: {\"choices\":[{\"delta\":{\"content\":\"Gr\u00fc\u00df\\n\"}}]}\n\ndata: no json\n\n")
          .chunk("data: {\"choices\":[{\"delta\":{\"content\":\"dich\"}}]}\n\ndata: [DONE]\n\n")
          .end());
  const auto result = ask(service, completionBody("Translate", "Hello", true));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->body, "Gr\u00fc\u00df\\ndich");
  EXPECT_EQ(parseJson(upstream.waitForRequests(1).at(0).body).at("stream"), true);
}

TEST_F(WithUpstream, aFailureKeepsItsStatusAndItsReason) {
  const std::string reason = R"({"error":{"message":"no such key"}})";
  for (const bool stream : {false, true}) {
    upstream.answer(Answer::json(401, reason));
    const auto result = ask(service, completionBody("Translate", "Hello", stream));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 401);
    EXPECT_EQ(result->body, reason);
  }
}

TEST(WithoutItsUpstream, theServiceSaysSo) {
  const RunningService service(
      {0, 0ms, "1", Upstream::Settings{"http://127.0.0.1:" + std::to_string(refusedPort), "", ""}});
  for (const bool stream : {false, true}) {
    const auto result = ask(service, completionBody("Translate", "Hello", stream));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 502);
    EXPECT_TRUE(parseJson(result->body).contains("error"));
  }
  EXPECT_EQ(service.client().Get("/api/app/models")->status, 502);
  EXPECT_THROW(Upstream({"ftp://127.0.0.1", "", ""}), std::invalid_argument);
}

TEST(EventStreamReader, doesNotMindWhereTheBytesAreCut) {
  const std::string stream =
      "data: "
      "{\"choices\":[{\"delta\":{\"content\":\"a\u00e9\"}}]}\n\ndata:{\"choices\":[{\"delta\":{\"content\":\"b\"}}]}\n";
  for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
    EventStreamReader reader;
    auto text = reader.take(stream.substr(0, cut));
    text += reader.take(stream.substr(cut));
    EXPECT_EQ(text, "aéb") << "cut at " << cut;
  }
}

}  // namespace
}  // namespace quillmark::service
