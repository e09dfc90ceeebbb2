#include "commands/ActionBehavior.h"

#include "base/Localization.h"

namespace quillmark {

std::string title(ActionBehavior behavior) {
  static constexpr std::array<const char*, RawValues<ActionBehavior>::table.size()> titles{
      trLater("Replace Selection"), trLater("Show Review"), trLater("Copy to Clipboard"),
      trLater("Insert After Selection"), trLater("Insert Before Selection")};
  return tr(titles[static_cast<std::size_t>(behavior)]);
}

}  // namespace quillmark
