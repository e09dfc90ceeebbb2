#pragma once

#include "base/RawValue.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// Where a panel opens, in the order in which it is offered.
enum class ReviewWindowPosition { nearMouse, center };

template <>
struct RawValues<ReviewWindowPosition> {
  static constexpr EnumTable<RawValueRow<ReviewWindowPosition>> table{{
      {ReviewWindowPosition::nearMouse, "nearMouse"},
      {ReviewWindowPosition::center, "center"},
  }};
};

/// How the review panel gets its size.
enum class ReviewWindowSizing { dynamic, fixed };

template <>
struct RawValues<ReviewWindowSizing> {
  static constexpr EnumTable<RawValueRow<ReviewWindowSizing>> table{{
      {ReviewWindowSizing::dynamic, "dynamic"},
      {ReviewWindowSizing::fixed, "fixed"},
  }};
};

/// The user's settings for the review panel and the command menu.
struct PanelSettings {
  explicit PanelSettings(UserDefaults& defaults)
      : comparisonEnabled(defaults, keys::comparisonEnabled),
        reviewWindowPosition(defaults, keys::reviewWindowPosition),
        windowSizing(defaults, keys::windowSizing),
        commandMenuPosition(defaults, keys::commandMenuPosition) {}

  Setting<bool> comparisonEnabled;
  Setting<ReviewWindowPosition> reviewWindowPosition;
  Setting<ReviewWindowSizing> windowSizing;
  Setting<ReviewWindowPosition> commandMenuPosition;
};

}  // namespace quillmark
