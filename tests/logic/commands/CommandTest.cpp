#include <gtest/gtest.h>

#include "commands/Command.h"
#include "commands/PromptFactory.h"

namespace quillmark {
namespace {

TEST(CommandJson, aRecordWithOnlyANameComesBackAsItWas) {
  const Command command = commandFromJson(parseJson(R"({"name":"x"})"));
  EXPECT_EQ(command.id, Uuid::processDefault());
  EXPECT_EQ(command.category, CommandCategory::customAction);
  EXPECT_EQ(command.type, UserAction(ActionCase::customPrompt));
  EXPECT_TRUE(command.enabled);
  EXPECT_EQ(toText(toJson(command)), R"({"name":"x"})");
}

TEST(CommandJson, everyFieldSurvives) {
  Command command = Command::make("Polite reply", UserAction::changeTone("Friendly"), "Be {{tone}}", "gpt-4.1",
                                  CommandCategory::rewrite);
  command.provider = Uuid::random();
  command.behavior = ActionBehavior::insertAfterSelection;
  command.enabled = false;
  command.usageCount = 7;
  EXPECT_EQ(commandFromJson(parseJson(toText(toJson(command)))), command);
}

TEST(CommandJson, nothingIsGuessed) {
  const char* bad[] = {
      R"({})",
      R"({"name":7})",
      R"({"name":"x","id":"not-a-uuid"})",
      R"({"name":"x","behavior":"shout"})",
      R"({"name":"x","category":"Rewrite"})",
      R"({"name":"x","usageCount":1.5})",
      R"({"name":"x","enabled":"yes"})",
      R"({"name":"x","type":"translate"})",
      R"([])",
  };
  for (const char* record : bad) {
    EXPECT_THROW(commandFromJson(parseJson(record)), DecodingError) << record;
  }
  EXPECT_NO_THROW(commandFromJson(parseJson(R"({"name":"x","content":null,"color":"red","usageCount":2.0})")));
}

TEST(UserActionJson, holdsOneCaseWithItsParameter) {
  EXPECT_EQ(toText(toJson(UserAction::translate("de"))), R"({"translate":{"_0":"de"}})");
  EXPECT_EQ(toText(toJson(UserAction(ActionCase::translate))), R"({"translate":{}})");
  EXPECT_EQ(userActionFromJson(parseJson(R"({"changeTone":{"_0":null},"unknown":1})")),
            UserAction(ActionCase::changeTone));
  EXPECT_NE(UserAction::translate("de"), UserAction(ActionCase::translate));

  for (const char* record : {R"({"translate":{},"fixGrammar":{}})", R"({})", R"({"shout":{}})"}) {
    try {
      userActionFromJson(parseJson(record));
      ADD_FAILURE() << record;
    } catch (const DecodingError& error) {
      EXPECT_STREQ(error.what(), "Invalid number of keys found, expected one.") << record;
    }
  }
}

TEST(NewCommands, knowWhetherTheirNameIsTheUsersOwn) {
  EXPECT_TRUE(Command::make("Mine", std::nullopt, "x", std::nullopt, CommandCategory::writing).hasCustomName);
  EXPECT_FALSE(Command::make(UserAction(ActionCase::customPrompt)).hasCustomName);
  EXPECT_FALSE(Command::make(UserAction(ActionCase::fixGrammar)).hasCustomName);
  EXPECT_TRUE(Command::make(UserAction::translate("de")).hasCustomName);
  EXPECT_EQ(Command::make(UserAction(ActionCase::freeStyle)).behavior, ActionBehavior::showReview);
  EXPECT_EQ(Command::make(UserAction(ActionCase::executePrompt)).content, "");
  EXPECT_EQ(Command::make(UserAction(ActionCase::executePrompt)).model, "gpt-4.1");
}

TEST(NewCommands, areShownByTheTitleOfTheirActionUntilRenamed) {
  Command command = Command::make(UserAction(ActionCase::asEmojis));
  command.name = "stored in another language";
  EXPECT_EQ(command.displayName(), "As emojis");
  command.hasCustomName = true;
  EXPECT_EQ(command.displayName(), "stored in another language");
  EXPECT_EQ(command.shortcutName(), "asEmojis");
  command.type = ActionCase::customPrompt;
  EXPECT_EQ(command.shortcutName(), command.id.toString());
}

/// FNV-1a, 64 bits.
std::uint64_t digest(const std::string& text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  }
  return hash;
}

TEST(PromptTexts, areByteForByteWhatTheyWere) {
  // Lengths and digests were computed from the texts as they were agreed on, not by this program.
  const struct {
    ActionCase action;
    std::size_t length;
    std::uint64_t digest;
  } texts[] = {
      {ActionCase::fixGrammar, 1200, 0x125db8386ded100c},      {ActionCase::improveWriting, 621, 0xf65910e0fb076008},
      {ActionCase::simplifyLanguage, 647, 0x6bbc76dde17c5ace}, {ActionCase::makeLonger, 467, 0x120cd93a5be67d9d},
      {ActionCase::makeShorter, 474, 0x3d392f332868f037},      {ActionCase::summarize, 679, 0xba4fc518e32cf89c},
      {ActionCase::explainThis, 461, 0x5da10bab1308a012},      {ActionCase::improvePrompt, 671, 0xab78a68cdd6bbc1a},
      {ActionCase::generatePrompt, 1117, 0x6068eb7be06cba27},  {ActionCase::executePrompt, 0, digest("")},
      {ActionCase::changeTone, 454, 0x9822898be3ceef29},       {ActionCase::translate, 578, 0xf684bfbab7efae80},
      {ActionCase::freeStyle, 539, 0x9bdf955badf961a1},        {ActionCase::titleCase, 669, 0xa45cffcc6be710b4},
      {ActionCase::asEmojis, 336, 0xc0f3010584501967},         {ActionCase::translateToYoda, 170, 0x88fdcbd10dd3a9c4},
      {ActionCase::asEmail, 446, 0x9e0cf6ffc5424800},          {ActionCase::asTweet, 336, 0x920983da0848f9f3},
      {ActionCase::humanizeText, 1675, 0x82a78c497c8f6b0b},    {ActionCase::customPrompt, 0, digest("")},
  };
  for (const auto& [action, length, expected] : texts) {
    const std::string text = PromptFactory::promptText(action);
    EXPECT_EQ(text.size(), length) << UserAction(action).identifier();
    EXPECT_EQ(digest(text), expected) << UserAction(action).identifier();
  }
  EXPECT_EQ(PromptFactory::promptText(UserAction::translate("de")), PromptFactory::promptText(ActionCase::translate));
}

}  // namespace
}  // namespace quillmark
