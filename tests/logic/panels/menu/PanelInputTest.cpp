#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ChangeModifier.h"
#include "panels/menu/KeyPressModifier.h"
#include "panels/menu/PromptListSearchViewModel.h"
#include "platform/simulated/SimulatedQueue.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Index = KeyPressModifier::Index;

enum Key { returnKey = 36, down = 125, up = 126 };

TEST(KeyPressModifier, movesTheSelectionRoundTheList) {
  const struct {
    std::size_t count;
    Index from;
    int key;
    Index to;
  } cases[] = {
      {0, {}, down, {}}, {0, 2, up, 2}, {3, {}, down, 0}, {3, {}, up, 0},  {3, 0, down, 1}, {3, 2, down, 0},
      {3, 2, up, 1},     {3, 0, up, 2}, {1, 0, up, 0},    {1, 0, down, 0}, {3, 9, down, 0}, {3, 1, returnKey, 1},
  };
  for (const auto& [count, from, key, to] : cases) {
    Observable<Index> selectedIndex(from);
    KeyPressModifier modifier(
        {returnKey}, [](int) {}, [count = count] { return count; }, &selectedIndex);
    modifier.keyDown(key);
    EXPECT_EQ(selectedIndex.get(), to) << key << " of " << count;
  }
}

TEST(ChangeModifier, countsTheFirstValueEvenIfItIsNone) {
  using Number = std::optional<int>;
  std::vector<Number> changes;
  ChangeModifier<Number> modifier([&](const Number& value) {
    changes.push_back(value);
    modifier.update(value);  // the action's changes may cause another drawing of the view
  });
  for (const Number value : {Number(), Number(), Number(1), Number(1), Number(2), Number(), Number()}) {
    modifier.update(value);
  }
  EXPECT_THAT(changes, ElementsAre(Number(), 1, 2, Number()));
}

TEST(PromptListSearch, followsTheFieldWhenItHasComeToRest) {
  SimulatedQueue queue;
  PromptListSearchViewModel search(queue);
  std::vector<std::string> searches;
  const auto connection = search.debouncedSearchText().observe([&](const auto& text) { searches.push_back(text); });
  const auto type = [&](const char* text, Duration then) {
    search.setSearchText(text);
    queue.advance(then);
  };
  type("a", 299ms);
  type("ab", 299ms);
  EXPECT_THAT(searches, ElementsAre());
  queue.advance(1ms);
  EXPECT_THAT(searches, ElementsAre("ab"));
  type("abc", 100ms);
  type("ab", 1s);
  EXPECT_THAT(searches, ElementsAre("ab")) << "the same once more";
  type("", 1s);
  EXPECT_THAT(searches, ElementsAre("ab", ""));
}

}  // namespace
}  // namespace quillmark
