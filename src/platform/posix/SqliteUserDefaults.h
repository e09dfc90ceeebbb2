#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/UserDefaults.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quillmark {

/// The defaults database in one SQLite file, readable by its owner only. Values are held in memory; a read costs a look
/// at the file's version, which tells whether another process has written. A set() or remove() is on the disk
/// when it returns, unless it was told that it need not be.
///
/// A damaged file is never overwritten: it is renamed to `<file>.damaged-<UTC time>`, and an empty one takes its place.
/// When no file can be had at all, everything reads as absent and nothing can be set.
class SqliteUserDefaults final : public UserDefaults {
 public:
  /// Opens the file and creates what is missing of it and of its directory.
  explicit SqliteUserDefaults(std::string file);
  ~SqliteUserDefaults() override;

  /// Where a damaged file was put when this one was opened. The user must be told.
  const std::optional<std::string>& setAside() const { return setAside_; }
  /// Why the file can't be used or not be written, in a sentence. The user must be told.
  const std::optional<std::string>& problem() const { return problem_; }

  std::optional<DefaultsValue> value(std::string_view key) const override;
  void remove(std::string_view key) override;
  void synchronize() override;

  /// Every key that has a value, in order.
  std::vector<std::string> storedKeys() const;

  /// A descriptor that becomes readable after a process has changed the file; -1 if there is none. Watch it from the
  /// main thread's loop, and call handleChange() then.
  int changeDescriptor();
  /// Tells of each key that another process has changed since it was last told of.
  void handleChange();

 protected:
  bool store(std::string_view key, DefaultsValue value, Durability durability) override;

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Database = std::unique_ptr<sqlite3, CloseDatabase>;
  using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;
  using Values = std::map<std::string, DefaultsValue, std::less<>>;
  enum class Condition { good, damaged, unusable };

  Condition open();
  Condition prepareFile();
  Condition openDatabase(const std::string& name, int flags);
  bool moveAside();

  std::optional<Values> readAll() const;
  void refresh() const;
  bool written(sqlite3_stmt* statement, std::string_view key, Durability durability);
  void announceWrite() const;

  const std::string file_;
  Database database_;
  Statement readVersion_, select_, replace_, delete_;
  mutable Values values_;
  mutable std::int64_t version_ = 0;                   // the version of the file that values_ was read from
  mutable std::set<std::string, std::less<>> untold_;  // keys that another process changed
  std::optional<std::string> setAside_;
  std::optional<std::string> problem_;
  bool unsynchronized_ = false;  // the last commits did not wait for the disk
  int inotify_ = -1;
};

}  // namespace quillmark
