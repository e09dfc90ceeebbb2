#include "commands/CommandCategory.h"

#include "base/Localization.h"

namespace quillmark {

using enum CommandCategory;

constinit const EnumTable<CommandCategoryInfo> RawValues<CommandCategory>::table{{
    {mainAction, "mainAction", trLater("Main Action"), "", 0, 0},
    {writing, "writing", trLater("Writing"), "pencil.line", 1, 2},
    {rewrite, "rewrite", trLater("Rewrite"), "lasso.badge.sparkles", 2, 1},
    {seo, "seo", trLater("SEO & Copywriting"), "rectangle.and.text.magnifyingglass", 3, 3},
    {development, "development", trLater("Development"), "hammer.circle", 4, 4},
    {prompting, "prompting", trLater("Prompting"), "command", 5, 6},
    {customAction, "customAction", trLater("Custom Action"), "command", 10, 5},
}};

namespace {

const CommandCategoryInfo& info(CommandCategory category) { return RawValues<CommandCategory>::table[category]; }

}  // namespace

std::string title(CommandCategory category) { return tr(info(category).title); }

std::string_view icon(CommandCategory category) { return info(category).icon; }

int sortRank(CommandCategory category) { return info(category).sortRank; }

int menuRank(CommandCategory category) { return info(category).menuRank; }

}  // namespace quillmark
