#pragma once

#include "platform/SurfaceWindow.h"

namespace quillmark {

/// The windows that the panels live in.
struct PanelWindows {
  PanelWindow* loading;  ///< may be null: then runs show no indicator
  SurfaceWindow& review;
  SurfaceWindow& commandMenu;
};

}  // namespace quillmark
