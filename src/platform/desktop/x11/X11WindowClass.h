#pragma once

#include <string>

#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// The two names of a window's WM_CLASS (ICCCM 4.1.2.5); empty when it has none.
struct X11WindowClass {
  std::string instanceName;
  std::string className;
};

X11WindowClass x11WindowClass(X11Connection& connection, xcb_window_t window);

}  // namespace quillmark
