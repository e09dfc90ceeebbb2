#include "shell/OnboardingMigration.h"

#include "base/Log.h"
#include "base/Text.h"
#include "commands/MigratedVersion.h"
#include "shell/OnboardingState.h"

namespace quillmark {

void runOnboardingMigration(UserDefaults& defaults, const Permissions& permissions, const Bundle& bundle) {
  MigratedVersion lastMigratedVersion(defaults);
  OnboardingState state(defaults);

  const std::string last = lastMigratedVersion.get();
  if (!last.empty() && text::compareNumerically(last, "2.7.0") >= 0) {
    return;
  }
  const std::string running = bundle.shortVersion.value_or("");
  if (state.hasCompletedOnboarding.get()) {
    lastMigratedVersion.set(running);
    return;
  }
  log("Running onboarding migration for users upgrading from version < 2.7.0 (current: " + running +
      ", last migrated: " + last + ")");
  if (permissions.keyInjection() == Permission::granted) {
    log("Onboarding migration: User is a returning user with valid setup - skipping onboarding");
    state.hasCompletedOnboarding.set(true);
  } else {
    log("Onboarding migration: User needs onboarding setup - will show onboarding flow");
  }
  lastMigratedVersion.set(running);
  log("Onboarding migration completed for version " + running);
}

}  // namespace quillmark
