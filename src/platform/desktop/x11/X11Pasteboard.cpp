#include "platform/desktop/x11/X11Pasteboard.h"

#include "base/Log.h"

namespace quillmark {

void X11Pasteboard::clearContents() { take(std::nullopt); }

void X11Pasteboard::setString(std::string text) { take(std::move(text)); }

void X11Pasteboard::take(std::optional<std::string> text) {
  if (!owner_.take(std::move(text))) {
    log("Pasteboard: it can't be taken");
  }
}

void X11Pasteboard::readString(Reader reader) {
  if (!connection_.alive()) {
    reader(std::nullopt);
  } else if (owner_.owns()) {
    auto text = owner_.text();
    reader(text && text->empty() ? std::nullopt : std::move(text));
  } else {
    reader_.read(std::move(reader));
  }
}

}  // namespace quillmark
