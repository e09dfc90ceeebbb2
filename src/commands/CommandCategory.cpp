#include "commands/CommandCategory.h"

#include "base/Localization.h"

namespace quillmark {
namespace {

struct CategoryInfo {
  const char* title;
  int sortRank;
  std::string_view icon;
};

const CategoryInfo& categoryInfo(CommandCategory category) {
  static constexpr std::array<CategoryInfo, RawValues<CommandCategory>::table.size()> table{{
      {trLater("Main Action"), 0, ""},
      {trLater("Writing"), 1, "pencil.line"},
      {trLater("Rewrite"), 2, "lasso.badge.sparkles"},
      {trLater("SEO & Copywriting"), 3, "rectangle.and.text.magnifyingglass"},
      {trLater("Development"), 4, "hammer.circle"},
      {trLater("Prompting"), 5, "command"},
      {trLater("Custom Action"), 10, "command"},
  }};
  return table[static_cast<std::size_t>(category)];
}

}  // namespace

std::string title(CommandCategory category) { return tr(categoryInfo(category).title); }

int sortRank(CommandCategory category) { return categoryInfo(category).sortRank; }

std::string_view icon(CommandCategory category) { return categoryInfo(category).icon; }

}  // namespace quillmark
