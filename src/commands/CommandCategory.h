#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "base/RawValue.h"

namespace quillmark {

/// The groups of commands in menus.
enum class CommandCategory { mainAction, writing, rewrite, seo, development, prompting, customAction };

template <>
struct RawValues<CommandCategory> {
  static constexpr std::array<std::pair<CommandCategory, std::string_view>, 7> table{{
      {CommandCategory::mainAction, "mainAction"},
      {CommandCategory::writing, "writing"},
      {CommandCategory::rewrite, "rewrite"},
      {CommandCategory::seo, "seo"},
      {CommandCategory::development, "development"},
      {CommandCategory::prompting, "prompting"},
      {CommandCategory::customAction, "customAction"},
  }};
};

/// In the interface language.
std::string title(CommandCategory category);

/// The command list is kept in ascending order of this rank.
int sortRank(CommandCategory category);

/// Symbol name of a group; empty for mainAction, whose commands show the icon of their action.
std::string_view icon(CommandCategory category);

}  // namespace quillmark
