#include "shell/RefusedEdits.h"

#include "base/Localization.h"

namespace quillmark {

RefusedEdits::RefusedEdits(UserDefaults& defaults, AlertHandler& alerts) : alerts_(alerts) {
  refusals_ = defaults.refused.connect([this](const std::string& reason) { tell(reason); });
}

void RefusedEdits::tell(const std::string& reason) {
  if (isTelling_) {
    return;
  }
  isTelling_ = true;
  alerts_.show(
      {AlertStyle::warning, tr("Change Not Stored"),
       tr("Quillmark could not store your last change, and everything is as it was before it. The system says: {}",
          reason)},
      lifetime_.guard([this](std::size_t) { isTelling_ = false; }));
}

}  // namespace quillmark
