#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/UserDefaults.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quillmark {

/// The defaults database in one SQLite file, readable by its owner only. Values are kept in memory; a read costs one
/// check of the file's version, which shows whether another process has written. A set() or remove() is on the disk
/// when it returns, unless the caller asked for less durability.
///
/// A damaged file is never overwritten: it is renamed to `<file>.damaged-<UTC time>`, and an empty one takes its place.
/// When no file can be opened at all, everything reads as absent and nothing can be set.
class SqliteUserDefaults final : public UserDefaults {
 public:
  /// Opens the file, creating it and its directory if they are missing.
  explicit SqliteUserDefaults(std::string file);
  ~SqliteUserDefaults() override;

  /// The new name of a damaged file that was set aside on opening. The user must be told.
  const std::optional<std::string>& setAside() const { return setAside_; }
  /// Why the file can't be read or written, in a sentence. The user must be told.
  const std::optional<std::string>& problem() const { return problem_; }

  std::optional<DefaultsValue> value(std::string_view key) const override;
  std::uint64_t revision(std::string_view key) const override;
  void synchronize() override;

  /// Every key that has a value, in order.
  std::vector<std::string> storedKeys() const;

  /// A descriptor that becomes readable after a process has changed the file; -1 if there is none. Watch it in the main
  /// thread's loop and call handleChange() when it is readable.
  int changeDescriptor();
  /// Emits a change for each key that another process has changed since the last call.
  void handleChange();

 protected:
  Expected<bool, std::string> write(const std::string& key, const std::optional<DefaultsValue>& value,
                                    Durability durability) override;
  Expected<void, std::string> begin(Durability durability) override;
  Expected<void, std::string> commit(Durability durability) override;
  void rollBack() override;

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Database = std::unique_ptr<sqlite3, CloseDatabase>;
  using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;
  struct Entry {
    DefaultsValue value;
    std::uint64_t revision = 0;
  };
  using Values = std::map<std::string, Entry, std::less<>>;
  enum class Condition { good, damaged, unusable };

  Condition open();
  Condition prepareFile();
  Condition openDatabase(const std::string& name, int flags);
  bool moveAside();

  std::optional<Values> readAll() const;
  bool refresh() const;
  void setSynchronous(Durability durability);
  void committed(Durability durability);
  Expected<void, std::string> execute(const char* sql);
  std::string reason() const;
  void announceWrite() const;

  const std::string file_;
  Database database_;
  Statement readVersion_, select_, replace_, delete_;
  mutable Values values_;
  mutable std::int64_t version_ = 0;  // the version of the file that values_ was read from
  mutable std::uint64_t lastRevision_ = 0;
  std::vector<std::pair<std::string, std::optional<Entry>>> undo_;  // what the transaction has replaced in values_
  bool inTransaction_ = false;
  mutable std::set<std::string, std::less<>> unannounced_;  // keys changed by another process, not emitted yet
  std::optional<std::string> setAside_;
  std::optional<std::string> problem_;
  Durability synchronous_ = Durability::lossOfPower;  // what the connection is set to
  bool unsynchronized_ = false;                       // the last commits did not wait for the disk
  int inotify_ = -1;
};

}  // namespace quillmark
