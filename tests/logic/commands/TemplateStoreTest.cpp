#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Log.h"
#include "commands/TemplateStore.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

Json record(const std::string& title) {
  return {{"id", "1"},         {"title", title},  {"tags", {"a"}},     {"prompt", "Do."}, {"created_at", "x"},
          {"updated_at", "y"}, {"slug", nullptr}, {"is_public", true}, {"more", 7}};
}

struct Templates : testing::Test {
  Templates() {
    setLogSink([this](std::string_view line) { logLines.emplace_back(line); });
  }
  ~Templates() override { setLogSink({}); }

  void start() {
    logLines.clear();
    store.emplace(desktop.defaults, transport, appConfig, desktop.queue);
  }
  void answer(const std::vector<Json>& records, int status = 200) {
    desktop.http.exchanges.back().answer(status, "application/json", toText(records));
    desktop.queue.settle();
  }
  std::vector<std::string> found(const std::string& query) {
    std::vector<std::string> names;
    for (const auto& command : store->filteredTemplates(query)) {
      names.push_back(command.name);
    }
    return names;
  }

  std::vector<std::string> logLines;
  SimulatedDesktop desktop;
  AppConfig appConfig{desktop.defaults, 3999};
  HttpTransport transport{desktop.http, desktop.queue, {}, {}, desktop.locale};
  std::optional<TemplateStore> store;
};

TEST_F(Templates, areFetchedOnceADayAndSearched) {
  const auto& exchanges = desktop.http.exchanges;
  start();
  ASSERT_EQ(exchanges.size(), 1u);
  EXPECT_EQ(exchanges[0].request.method, "GET");
  EXPECT_EQ(exchanges[0].request.url, std::string(AppConfig::publicRoot) + "/api/prompts");
  EXPECT_EQ(exchanges[0].request.headers.size(), 3u) << "those of the session";
  desktop.advance(500ms);
  Json withoutPrompt = record("ÜBER alles");
  withoutPrompt.erase("prompt");
  answer({record("One"), withoutPrompt, record("Do it")});
  EXPECT_THAT(found("dO."), ElementsAre("One", "Do it"));
  EXPECT_THAT(found("über"), ElementsAre("ÜBER alles"));
  EXPECT_THAT(logLines, ElementsAre("No cached templates found", "Initialized 22 fallback templates",
                                    "Fetching templates from API...", "Cached 3 templates",
                                    "Successfully fetched and cached 3 templates from API"));
  EXPECT_EQ(desktop.defaults.get<std::int64_t>("cachedTemplatesCount"), 3);
  EXPECT_EQ(desktop.defaults.get<double>("templatesLastFetch"), 1772355600.5);

  const auto fetched = store->templates.get();
  desktop.advance(86399s);
  start();
  EXPECT_THAT(logLines, ElementsAre("Loaded 3 cached templates"));
  EXPECT_EQ(store->templates.get(), fetched);

  desktop.advance(1s);
  desktop.defaults.set("useLocalApi", true);
  for (const std::size_t requests : {2u, 3u}) {
    start();
    ASSERT_EQ(exchanges.size(), requests) << "a failed fetch is tried again";
    answer({}, 503);
    EXPECT_EQ(logLines.back(), "Failed to fetch templates from API: Response status code was unacceptable: 503.");
    EXPECT_EQ(store->templates.get(), fetched);
  }
  EXPECT_EQ(exchanges.back().request.url, "http://127.0.0.1:3999/api/prompts");
  start();
  store.reset();
  answer({});
  EXPECT_EQ(desktop.defaults.get<std::int64_t>("cachedTemplatesCount"), 3) << "nobody is there to take it";
}

TEST_F(Templates, areTheBuiltInOnesWithoutANetwork) {
  start();
  desktop.http.exchanges.back().fail("No route.");
  desktop.queue.settle();
  EXPECT_TRUE(desktop.defaults.values.empty()) << "these are not cached";
  const auto& list = store->templates.get();
  ASSERT_EQ(list.size(), 22u);
  EXPECT_FALSE(list[7].model.has_value());
  EXPECT_EQ(list[17].category, CommandCategory::seo);
  EXPECT_EQ(list[18].name, "Translate to Yoda");
  EXPECT_EQ(list[21].type, UserAction(ActionCase::customPrompt));
  EXPECT_EQ(list[21].category, CommandCategory::rewrite);
  EXPECT_EQ(list[21].content, list[17].content);
}

TEST_F(Templates, areTakenOnlyIfEveryRecordIsWhole) {
  for (const char* change :
       {R"({"id":null})", R"({"title":null})", R"({"created_at":null})", R"({"updated_at":null})", R"({"tags":null})",
        R"({"tags":[1]})", R"({"slug":1})", R"({"prompt":false})", R"({"is_public":"yes"})"}) {
    start();
    Json broken = record("Two");
    broken.update(parseJson(change));
    answer({record("One"), broken});
    EXPECT_THAT(logLines.back(), StartsWith("Failed to fetch templates from API: Response could not be decoded"));
    EXPECT_EQ(store->templates->size(), 22u) << change;
  }
}

TEST_F(Templates, replaceACacheThatDoesNotDecodeOnceItIsKept) {
  const Data damaged{R"([{"name":"One"},{"name":)"};
  desktop.defaults.set("cachedTemplates", damaged);
  for (const bool diskIsFull : {true, false}) {
    desktop.defaults.diskIsFull = diskIsFull;
    start();
    EXPECT_EQ(store->templates->size(), 22u);
    answer({record("One")});
    EXPECT_EQ(found("").size(), diskIsFull ? 22u : 1u);
    EXPECT_EQ(store->lastFetchTimestamp.get() == 0, diskIsFull) << "then the next start fetches it again";
    EXPECT_THAT(logLines, Contains("Cached 1 templates").Times(diskIsFull ? 0 : 1));
  }
  EXPECT_EQ(desktop.defaults.get<Data>("cachedTemplates.undecodable-1"), damaged);
}

TEST(CommandTemplates, becomeCustomPrompts) {
  CommandTemplate source = commandTemplateFromJson(record("My Prompt"));
  EXPECT_EQ(source.toCommand().type, UserAction(ActionCase::customPrompt));
  EXPECT_EQ(source.toCommand().slug, "my-prompt");
  source.slug = "theirs";
  source.content = "Other";
  EXPECT_EQ(source.toCommand().slug, "theirs");
  EXPECT_EQ(source.toCommand().content, "Do.");
  source.prompt.reset();
  EXPECT_EQ(source.toCommand().content, "Other");
  source.content.reset();
  EXPECT_FALSE(source.toCommand().content.has_value());
  const Json categories = parseJson(
      R"({"Main Action":"mainAction","mainAction":"mainAction","Writing":"writing","REWRITE":"rewrite","Seo":"seo",)"
      R"("SEO & Copywriting":"seo","prompting":"prompting","Development":"development","Coding":"customAction"})");
  for (const auto& [name, category] : categories.items()) {
    source.category = name;
    EXPECT_EQ(rawValue(source.toCommand().category), category) << name;
  }
}

}  // namespace
}  // namespace quillmark
