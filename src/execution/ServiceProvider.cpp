#include "execution/ServiceProvider.h"

#include "base/Localization.h"

namespace quillmark {

void ServiceProvider::service(const std::optional<std::string>& text) {
  if (!text || text->empty()) {
    alertHandler_.show(AlertKind::unknownError(tr("Could not find the text for parsing.")));
    return;
  }
  mainQueue_.async([this] { commandPanel_.togglePanel(InvocationSource::serviceProvider); });
}

}  // namespace quillmark
