#pragma once

#include "platform/UserDefaults.h"

namespace quillmark {

/// How far the user is with the first-run flow.
struct OnboardingState {
  explicit OnboardingState(UserDefaults& defaults)
      : hasCompletedOnboarding(defaults, keys::hasCompletedOnboarding),
        hasSetupShortcut(defaults, keys::hasSetupShortcut) {}

  Setting<bool> hasCompletedOnboarding;
  Setting<bool> hasSetupShortcut;
};

}  // namespace quillmark
