#include "platform/desktop/x11/X11WindowClass.h"

#include "base/Text.h"

namespace quillmark {

X11WindowClass x11WindowClass(X11Connection& connection, xcb_window_t window) {
  const auto property = connection.property(window, XCB_ATOM_WM_CLASS);
  if (!property) {
    return {};
  }
  const auto names = text::split(property->bytes, '\0');
  return {text::decodeUtf8(names[0]), names.size() > 1 ? text::decodeUtf8(names[1]) : std::string()};
}

}  // namespace quillmark
