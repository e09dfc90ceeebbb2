#pragma once

#include "platform/PanelWindow.h"

namespace quillmark {

/// The windows of the panels, which outlive their users.
struct PanelWindows {
  FloatingWindow* loading = nullptr;  ///< null: runs show no indicator
  PanelWindow& review;
  PanelWindow& commandMenu;
};

}  // namespace quillmark
