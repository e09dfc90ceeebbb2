#pragma once

#include "platform/Bundle.h"
#include "platform/Permissions.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// Decides once, before the commands load, who skips the first-run flow: users who come from a version below 2.7.0, and
/// new users, if they have granted the accessibility permission already. Writes the running version to
/// `lastMigratedVersion`, so that the commands of such a store are not migrated again.
void runOnboardingMigration(UserDefaults& defaults, const Permissions& permissions, const Bundle& bundle);

}  // namespace quillmark
