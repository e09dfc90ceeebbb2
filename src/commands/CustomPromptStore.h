#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "commands/Command.h"
#include "commands/ConfigurableStore.h"
#include "commands/MigratedVersion.h"
#include "platform/MainQueue.h"
#include "platform/RunningVersion.h"
#include "platform/StoredList.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The user's commands, and the flat list of them that the command menu searches. Every change returns false when it
/// could not be stored; the commands are then unchanged. Main thread only.
class CustomPromptStore {
  StoredList<Command> list_;

 public:
  using Edit = std::function<void(std::vector<Command>&)>;

  static constexpr const char* userDefaultsKey = keys::customPrompts.name;

  /// What the flat list is built from besides the commands.
  struct Expansions {
    ConfigurableStore& languageStore;
    ConfigurableStore& toneStore;
    MainQueue& mainQueue;
  };

  explicit CustomPromptStore(UserDefaults& defaults, std::optional<Expansions> expansions = std::nullopt);

  MigratedVersion lastMigratedVersion;
  RunningVersion appVersion;  ///< stored before this store loads

  /// Sorted by category, then in the user's order; empty before load().
  const Observable<std::vector<Command>>& prompts{list_.records()};
  /// Enabled commands by usage, with a translate command for each language and a change-tone command for each tone.
  /// Never stored; always empty in a store without expansions.
  Observable<std::vector<Command>> searchableCommands;

  /// Reads the stored commands and brings those of an older version up to date, or stores the base commands when there
  /// are none. A list that does not decode is set aside first.
  void load();
  /// The same for a program that only runs commands: nothing is brought up to date and nothing stored.
  void loadUnchanged();
  /// Edits the commands that are stored now, sorts them by category (stable), stores and shows them; `action` is a
  /// label for the log.
  [[nodiscard]] bool save(const Edit& edit, const std::optional<std::string>& action);
  /// Adds the base commands that are missing; leaves existing ones alone.
  [[nodiscard]] bool initBasePrompts();
  /// Must be called after each change of the commands, as save() does; changes of languages and tones are followed
  /// automatically.
  void buildSearchableCommands();

  std::optional<Command> command(const std::optional<Uuid>& id) const;
  /// The stored command for an action; `translate` and `changeTone` find the one without a parameter. The free-style
  /// command always exists and is never stored.
  std::optional<Command> commandFor(const UserAction& action) const;
  /// The first command whose name has this slug; stored slugs are ignored.
  std::optional<Command> commandForSlug(const std::string& slug) const;

  /// Enabled commands of a category, in order, without free-style ones.
  std::vector<Command> commands(CommandCategory category) const;
  /// Enabled commands of the main category that take no parameter.
  std::vector<Command> mainCommands() const;

  /// Appends a command, or a new empty one, and saves. Names and slugs need not be unique.
  [[nodiscard]] bool add(std::optional<Command> command);
  /// Replaces the command with the same id and gives it the slug of its name; always saves.
  [[nodiscard]] bool update(Command command);
  /// Adds a copy as a custom prompt of its own.
  [[nodiscard]] bool duplicate(const std::optional<Uuid>& id);
  /// Counts a run. The count reaches the database and the order of the menu at the next save.
  void incrementUsage(const std::optional<Uuid>& id);
  /// Merges one command of a backup into a list that is being edited. A built-in action is reset and keeps only the
  /// behaviour; a custom prompt replaces the one with its id or is appended.
  static void merge(std::vector<Command>& list, Command command);

 private:
  /// One of the two lists that the flat list follows.
  struct Followed {
    Connection changes;
    std::optional<ConfigurableStore::Items> enabled;
    TimerHandle rebuild;
  };

  void runMigrations();
  void follow(ConfigurableStore& store, Followed& followed);

  std::optional<Expansions> expansions_;
  std::map<Uuid, std::int64_t> unsavedRuns_;  // counted by incrementUsage() since the last save
  Connection editsElsewhere_;
  mutable std::optional<Command> freeStyle_;
  Followed languages_;
  Followed tones_;
  Lifetime lifetime_;
};

}  // namespace quillmark
