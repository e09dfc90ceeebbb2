#pragma once

#include "platform/SurfaceWindow.h"

namespace quillmark {

/// The windows of the panels, which outlive whatever shows them.
struct PanelWindows {
  PanelWindow* loading = nullptr;  ///< null: runs show no indicator
  SurfaceWindow& review;
  SurfaceWindow& commandMenu;
};

}  // namespace quillmark
