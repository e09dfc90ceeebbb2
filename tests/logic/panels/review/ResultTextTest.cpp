#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "panels/review/ResultText.h"

namespace quillmark {
namespace {

TEST(ResultText, reportsFromWhereOnItHasChanged) {
  using Change = std::function<void(ResultText&)>;
  const auto set = [](std::string text) { return Change([text](auto& result) { result.set(text); }); };
  const auto append = [](std::string text) { return Change([text](auto& result) { result.append(text); }); };
  const struct {
    const char* before;
    Change change;
    const char* after;
    std::vector<std::size_t> kept;
  } cases[] = {
      {"the", append(" cat"), "the cat", {3}},
      {"the", append(""), "the", {}},
      {"the cat", set("the cat"), "the cat", {}},
      {"the cat", set("the dog"), "the dog", {4}},
      {"the cat", set("the"), "the", {3}},
      {"the", set("the cat"), "the cat", {3}},
      {"the", set(""), "", {0}},
      {"a\u00e4", set("a\u00f6"), "a\u00f6", {1}},
      {"a\U0001F600!", set("a\U0001F601"), "a\U0001F601", {1}},
  };
  for (const auto& [before, change, after, kept] : cases) {
    ResultText text;
    text.set(before);
    std::vector<std::size_t> told;
    const auto changes = text.changed.connect([&](std::size_t place) { told.push_back(place); });
    change(text);
    EXPECT_EQ(text.get(), after);
    EXPECT_EQ(told, kept) << before << " -> " << after;
  }
}

}  // namespace
}  // namespace quillmark
