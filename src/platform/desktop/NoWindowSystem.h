#pragma once

#include "platform/desktop/WindowSystem.h"

namespace quillmark {

/// The adapters for a session whose window system offers nothing: no keys, no pasteboard, no application in front.
/// Screens and windows are the toolkit's. A window system with only some adapters takes the others from here.
class NoWindowSystem : public WindowSystem {
 public:
  NoWindowSystem();
  ~NoWindowSystem() override;

  Pasteboard& pasteboard() override;
  KeyInjector& keyInjector() override;
  HotKeys& hotKeys() override;
  Workspace& workspace() override;
  Screens& screens() override;
  Permissions& permissions() override;
  WindowHints& windowHints() override;
  std::optional<std::string> problem() const override;

 private:
  struct Adapters;
  std::unique_ptr<Adapters> adapters_;
};

}  // namespace quillmark
