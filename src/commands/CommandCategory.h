#pragma once

#include <string>
#include <string_view>

#include "base/RawValue.h"

namespace quillmark {

/// The groups of commands in menus.
enum class CommandCategory { mainAction, writing, rewrite, seo, development, prompting, customAction };

struct CommandCategoryInfo {
  CommandCategory key;
  std::string_view raw;
  const char* title;  ///< English
  std::string_view icon;
  int sortRank;
  int menuRank;
};

template <>
struct RawValues<CommandCategory> {
  static const EnumTable<CommandCategoryInfo> table;
};

/// In the interface language.
std::string title(CommandCategory category);

/// Symbol name of a group; empty for mainAction, whose commands show the icon of their action.
std::string_view icon(CommandCategory category);

/// The command list is sorted by this rank, ascending.
int sortRank(CommandCategory category);

/// The groups of the tray menu are sorted by this rank, ascending.
int menuRank(CommandCategory category);

}  // namespace quillmark
