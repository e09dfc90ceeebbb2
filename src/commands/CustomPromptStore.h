#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "commands/Command.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The user's commands. Main thread only.
class CustomPromptStore {
 public:
  static constexpr const char* userDefaultsKey = "customPrompts2";

  explicit CustomPromptStore(UserDefaults& defaults) : defaults_(defaults) {}

  Observable<std::vector<Command>> prompts;  ///< sorted by category, then in the user's order; empty before load()

  /// Reads the stored commands, or makes the base commands when there are none. A list that does not decode is set
  /// aside first.
  void load();
  /// Sorts by category (stable), publishes and stores the list; `action` is a label for the log.
  void save(std::optional<std::vector<Command>> list, const std::optional<std::string>& action);
  /// Adds the base commands that are missing; touches none that exists.
  void initBasePrompts();

  std::optional<Command> command(const std::optional<Uuid>& id) const;
  /// The stored command for an action; `translate` and `changeTone` find the one without a parameter. The free-style
  /// command always exists and is never stored.
  std::optional<Command> commandFor(const UserAction& action) const;
  /// The first command whose name has this slug; the stored slugs play no part.
  std::optional<Command> commandForSlug(const std::string& slug) const;

  /// Enabled commands of a category, in order, without free-style ones.
  std::vector<Command> commands(CommandCategory category) const;
  /// Enabled commands of the main category that are offered by themselves.
  std::vector<Command> mainCommands() const;

  /// Counts a run. The count reaches the database at the next save.
  void incrementUsage(const std::optional<Uuid>& id);

 private:
  UserDefaults& defaults_;
  mutable std::optional<Command> freeStyle_;
};

}  // namespace quillmark
