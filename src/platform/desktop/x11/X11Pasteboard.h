#pragma once

#include "platform/Pasteboard.h"
#include "platform/desktop/x11/X11SelectionOwner.h"
#include "platform/desktop/x11/X11SelectionReader.h"

namespace quillmark {

/// The CLIPBOARD selection, independent of the toolkit's clipboard, which blocks on owners that hang. A cleared
/// pasteboard is one that we own and that offers no text, so that a copy key without effect reads as empty. The PRIMARY
/// selection is never touched: an editor that loses it forgets what was selected.
class X11Pasteboard : public Pasteboard {
 public:
  X11Pasteboard(X11Connection& connection, MainQueue& queue)
      : connection_(connection), owner_(connection, queue), reader_(connection, queue) {}

  void clearContents() override;
  void setString(std::string text) override;
  void readString(Reader reader) override;

 private:
  void take(std::optional<std::string> text);

  X11Connection& connection_;
  X11SelectionOwner owner_;
  X11SelectionReader reader_;
};

}  // namespace quillmark
