#include "platform/posix/SqliteUserDefaults.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/Json.h"
#include "base/Log.h"
#include "base/Text.h"

namespace quillmark {
namespace {

/// How long a write waits for another process to finish its own.
constexpr int busyMilliseconds = 2000;

/// Waits briefly for another process's lock; a callback of sqlite3_busy_handler(), where 0 means giving up. Retries
/// much sooner than SQLite's own handler, which can miss every gap between the writes of a busy process.
int waitForOthers(void* /*context*/, int attempts) {
  constexpr int pause = 2;
  if (attempts * pause >= busyMilliseconds) {
    return 0;
  }
  sqlite3_sleep(pause);
  return 1;
}

/// The files that belong to one database, by the suffix to its name.
constexpr std::array companions{"", "-wal", "-shm", "-journal"};

/// The names of the types in the file, in the order of DefaultsValue's alternatives.
constexpr std::array<std::string_view, std::variant_size_v<DefaultsValue>> typeNames{"boolean", "integer", "double",
                                                                                     "string",  "data",    "strings"};

std::optional<off_t> sizeOf(const std::string& file) {
  struct stat status {};
  return stat(file.c_str(), &status) == 0 ? std::optional(status.st_size) : std::nullopt;
}

/// Makes the missing directories above the file, for their owner only.
void createDirectories(const std::string& file) {
  for (auto slash = file.find('/', 1); slash != file.npos; slash = file.find('/', slash + 1)) {
    mkdir(file.substr(0, slash).c_str(), 0700);  // a failure shows when the file is opened
  }
}

/// Lets only one process at a time inspect, create or set aside the file: SQLite's own locks come later, and its switch
/// to a write-ahead log does not wait for others. Continues without the lock where none can be taken.
class OpeningLock {
 public:
  explicit OpeningLock(const std::string& file)
      : directory_(
            ::open(file.substr(0, file.rfind('/') + 1).append(".").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    constexpr int pause = 5;
    for (int waited = 0; directory_ >= 0 && flock(directory_, LOCK_EX | LOCK_NB) != 0 && waited < busyMilliseconds;
         waited += pause) {
      sqlite3_sleep(pause);
    }
  }
  OpeningLock(const OpeningLock&) = delete;
  OpeningLock& operator=(const OpeningLock&) = delete;
  ~OpeningLock() {
    if (directory_ >= 0) {
      ::close(directory_);
    }
  }

 private:
  int directory_;
};

std::string timeStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  std::array<char, 20> text{};
  std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts);
  return text.data();
}

void bindText(sqlite3_stmt* statement, int index, std::string_view text) {
  sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

/// Binds a value; a list is encoded into `buffer`, which must outlive the statement's step.
void bindValue(sqlite3_stmt* statement, int index, const DefaultsValue& value, std::string& buffer) {
  if (const auto* boolean = std::get_if<bool>(&value)) {
    sqlite3_bind_int(statement, index, *boolean ? 1 : 0);
  } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    sqlite3_bind_int64(statement, index, *integer);
  } else if (const auto* number = std::get_if<double>(&value)) {
    sqlite3_bind_double(statement, index, *number);
  } else if (const auto* string = std::get_if<std::string>(&value)) {
    bindText(statement, index, *string);
  } else if (const auto* data = std::get_if<Data>(&value)) {
    sqlite3_bind_blob64(statement, index, data->bytes.data(), data->bytes.size(), SQLITE_STATIC);
    if (data->bytes.empty()) {
      sqlite3_bind_zeroblob(statement, index, 0);  // an empty range may have a null address, which would bind null
    }
  } else {
    buffer = toText(std::get<std::vector<std::string>>(value));
    bindText(statement, index, buffer);
  }
}

std::string columnBytes(sqlite3_stmt* statement, int column) {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  return bytes == nullptr ? std::string() : std::string(bytes, size);
}

/// Nothing for a value of a type that this version does not know.
std::optional<DefaultsValue> columnValue(sqlite3_stmt* statement, int typeColumn, int column) {
  const std::string type = columnBytes(statement, typeColumn);
  if (type == "boolean") {
    return sqlite3_column_int(statement, column) != 0;
  }
  if (type == "integer") {
    return sqlite3_column_int64(statement, column);
  }
  if (type == "double") {
    // SQLite stores what is not a number as null.
    return sqlite3_column_type(statement, column) == SQLITE_NULL ? std::numeric_limits<double>::quiet_NaN()
                                                                 : sqlite3_column_double(statement, column);
  }
  if (type == "string") {
    return columnBytes(statement, column);
  }
  if (type == "data") {
    return Data{columnBytes(statement, column)};
  }
  if (type == "strings") {
    try {
      return decodeArray<std::string>(parseJson(columnBytes(statement, column)), decodeJson<std::string>);
    } catch (const DecodingError&) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

/// The file name as a URI, which can take parameters.
std::string uriOf(std::string file) {
  for (const auto& [character, code] : {std::pair{"%", "%25"}, {"?", "%3f"}, {"#", "%23"}}) {
    file = text::replacingAll(std::move(file), character, code);
  }
  return "file:" + file;
}

}  // namespace

void SqliteUserDefaults::CloseDatabase::operator()(sqlite3* database) const { sqlite3_close_v2(database); }
void SqliteUserDefaults::FinalizeStatement::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

SqliteUserDefaults::SqliteUserDefaults(std::string file) : file_(std::move(file)) {
  createDirectories(file_);
  const OpeningLock lock(file_);
  Condition condition = open();
  if (condition == Condition::damaged && moveAside()) {
    log("The settings were damaged. They were set aside as " + *setAside_);
    condition = open();
  }
  if (condition != Condition::good) {
    log(*problem_);
  }
}

SqliteUserDefaults::~SqliteUserDefaults() {
  if (inotify_ >= 0) {
    ::close(inotify_);
  }
}

SqliteUserDefaults::Condition SqliteUserDefaults::open() {
  problem_.reset();
  if (const auto condition = prepareFile(); condition != Condition::good) {
    return condition;
  }
  Condition condition = openDatabase(file_, SQLITE_OPEN_READWRITE);
  if (condition == Condition::unusable && sizeOf(file_ + "-wal").value_or(0) == 0 &&
      openDatabase(uriOf(file_) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI) == Condition::good) {
    // In a read-only directory the log and its index can't be created. Without a log the file is complete, and nobody
    // can change it.
    condition = Condition::good;
  }
  return condition;
}

SqliteUserDefaults::Condition SqliteUserDefaults::prepareFile() {
  // SQLite deletes a log whose database is missing, and with it the user's latest changes.
  if (sizeOf(file_).value_or(0) == 0 && sizeOf(file_ + "-wal").value_or(0) > 0) {
    return Condition::damaged;
  }
  // Only a file that this process has not opened yet may be opened and closed here: closing any descriptor of a file
  // releases all locks that the process holds on it (fcntl(2), record locks).
  if (const int created = ::open(file_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600); created >= 0) {
    ::close(created);
  } else if (errno != EEXIST) {
    problem_ = "The settings can't be stored in " + file_ + ": " + std::strerror(errno) + ".";
    return Condition::unusable;
  }
  // New companion files take the mode of the database; existing ones were left by an earlier run or came from a copy.
  for (const char* companion : companions) {
    const std::string name = file_ + companion;
    struct stat status {};
    if (stat(name.c_str(), &status) == 0 && (status.st_mode & 0177) != 0) {
      chmod(name.c_str(), 0600);
    }
  }
  return Condition::good;
}

SqliteUserDefaults::Condition SqliteUserDefaults::openDatabase(const std::string& name, int flags) {
  sqlite3* opened = nullptr;
  int code = sqlite3_open_v2(name.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Database database(opened);
  const auto execute = [&](const char* sql) {
    if (code == SQLITE_OK) {
      code = sqlite3_exec(opened, sql, nullptr, nullptr, nullptr);
    }
  };
  const auto prepared = [&](const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (code == SQLITE_OK) {
      code = sqlite3_prepare_v3(opened, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    }
    return Statement(statement);
  };
  if (code == SQLITE_OK) {
    sqlite3_busy_handler(opened, waitForOthers, nullptr);
    // Closing a damaged file must not change it.
    sqlite3_db_config(opened, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  }
  if (const auto check = prepared("PRAGMA quick_check(1)"); check) {
    if (sqlite3_step(check.get()) == SQLITE_ROW && columnBytes(check.get(), 0) != "ok") {
      code = SQLITE_CORRUPT;
    } else {
      code = sqlite3_reset(check.get());
    }
  }
  if (code == SQLITE_OK && sqlite3_db_readonly(opened, "main") == 0) {
    execute("PRAGMA journal_mode=WAL");
    execute("PRAGMA synchronous=FULL");
    execute("CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value) WITHOUT ROWID");
  }
  auto readVersion = prepared("PRAGMA data_version");
  auto select = prepared("SELECT key, type, value FROM defaults");
  auto replace = prepared("REPLACE INTO defaults (key, type, value) VALUES (?, ?, ?)");
  auto remove = prepared("DELETE FROM defaults WHERE key = ?");
  if (code != SQLITE_OK) {
    const bool damaged = code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
    problem_ = "The settings in " + file_ + " can't be used: " + sqlite3_errstr(code) + ".";
    return damaged ? Condition::damaged : Condition::unusable;
  }
  problem_.reset();
  sqlite3_db_config(opened, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
  database_ = std::move(database);
  readVersion_ = std::move(readVersion);
  select_ = std::move(select);
  replace_ = std::move(replace);
  delete_ = std::move(remove);
  version_ = -1;
  synchronous_ = Durability::lossOfPower;
  refresh();
  unannounced_.clear();
  return Condition::good;
}

bool SqliteUserDefaults::moveAside() {
  const std::string stem = file_ + ".damaged-" + timeStamp();
  std::string place = stem;
  for (int i = 2; sizeOf(place) || sizeOf(place + "-wal"); ++i) {
    place = stem + "-" + std::to_string(i);
  }
  for (const char* companion : companions) {
    if (rename((file_ + companion).c_str(), (place + companion).c_str()) != 0 && errno != ENOENT) {
      problem_ = "The settings in " + file_ + " are damaged and can't be set aside: " + std::strerror(errno) + ".";
      return false;
    }
  }
  setAside_ = place;
  return true;
}

/// Nothing when the file can't be read.
std::optional<SqliteUserDefaults::Values> SqliteUserDefaults::readAll() const {
  Values values;
  while (sqlite3_step(select_.get()) == SQLITE_ROW) {
    if (auto value = columnValue(select_.get(), 1, 2)) {
      values.emplace(columnBytes(select_.get(), 0), Entry{std::move(*value)});
    }
  }
  if (sqlite3_reset(select_.get()) != SQLITE_OK) {
    log("The settings can't be read: " + reason());
    return std::nullopt;
  }
  return values;
}

std::vector<std::string> SqliteUserDefaults::storedKeys() const {
  refresh();
  std::vector<std::string> result;
  result.reserve(values_.size());
  for (const auto& entry : values_) {
    result.push_back(entry.first);
  }
  return result;
}

/// Brings the copy in memory up to date. False when the file could not be read: the copy is then out of date, and
/// nothing derived from it may be written.
bool SqliteUserDefaults::refresh() const {
  if (!database_) {
    return false;
  }
  const bool known = sqlite3_step(readVersion_.get()) == SQLITE_ROW;
  const std::int64_t version = sqlite3_column_int64(readVersion_.get(), 0);
  sqlite3_reset(readVersion_.get());
  if (known && version == version_) {
    return true;
  }
  auto values = known ? readAll() : std::nullopt;
  if (!values) {
    return false;
  }
  // A write between the two reads makes the version differ again.
  version_ = version;
  for (auto& [key, entry] : *values) {
    if (const auto old = values_.find(key); old != values_.end() && old->second.value == entry.value) {
      entry.revision = old->second.revision;
    } else {
      entry.revision = ++lastRevision_;
      unannounced_.insert(key);
    }
  }
  for (const auto& [key, entry] : values_) {
    if (!values->contains(key)) {
      unannounced_.insert(key);
    }
  }
  values_ = std::move(*values);
  return true;
}

std::optional<DefaultsValue> SqliteUserDefaults::value(std::string_view key) const {
  refresh();
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second.value);
}

std::uint64_t SqliteUserDefaults::revision(std::string_view key) const {
  refresh();
  const auto found = values_.find(key);
  return found == values_.end() ? 0 : found->second.revision;
}

Expected<bool, std::string> SqliteUserDefaults::write(const std::string& key, const std::optional<DefaultsValue>& value,
                                                      Durability durability) {
  if (!inTransaction_ && !refresh()) {
    return unexpected(reason());
  }
  const auto old = values_.find(key);
  if (!value && old == values_.end()) {
    return false;
  }
  if (!value || old == values_.end() || old->second.value != *value) {
    if (!inTransaction_) {
      setSynchronous(durability);
    }
    sqlite3_stmt* const statement = value ? replace_.get() : delete_.get();
    std::string buffer;
    bindText(statement, 1, key);
    if (value) {
      bindText(statement, 2, typeNames[value->index()]);
      bindValue(statement, 3, *value, buffer);
    }
    sqlite3_step(statement);
    const bool stored = sqlite3_reset(statement) == SQLITE_OK;
    sqlite3_clear_bindings(statement);
    if (!stored) {
      return unexpected(reason());
    }
    if (inTransaction_) {
      undo_.emplace_back(key, old == values_.end() ? std::nullopt : std::optional(old->second));
    } else {
      committed(durability);
    }
    if (value) {
      values_.insert_or_assign(key, Entry{*value, ++lastRevision_});
    } else {
      values_.erase(old);
    }
  }
  if (!inTransaction_) {
    unannounced_.erase(key);
  }
  return true;
}

Expected<void, std::string> SqliteUserDefaults::begin(Durability durability) {
  if (!database_) {
    return unexpected(reason());
  }
  setSynchronous(durability);  // not possible within a transaction
  if (auto begun = execute("BEGIN IMMEDIATE"); !begun) {
    return begun;
  }
  if (!refresh()) {
    const std::string problem = reason();
    (void)execute("ROLLBACK");
    return unexpected(problem);
  }
  inTransaction_ = true;
  return {};
}

Expected<void, std::string> SqliteUserDefaults::commit(Durability durability) {
  if (auto done = execute("COMMIT"); !done) {
    return done;
  }
  inTransaction_ = false;
  if (!undo_.empty()) {
    committed(durability);
  }
  for (const auto& [key, entry] : undo_) {
    unannounced_.erase(key);
  }
  undo_.clear();
  return {};
}

void SqliteUserDefaults::rollBack() {
  if (sqlite3_get_autocommit(database_.get()) == 0) {  // some errors end the transaction on their own
    (void)execute("ROLLBACK");
  }
  inTransaction_ = false;
  for (auto undo = undo_.rbegin(); undo != undo_.rend(); ++undo) {
    if (undo->second) {
      values_.insert_or_assign(undo->first, std::move(*undo->second));
    } else {
      values_.erase(undo->first);
    }
  }
  undo_.clear();
}

/// In NORMAL mode a commit is with the operating system but not yet on the disk; the next FULL commit flushes it too.
void SqliteUserDefaults::setSynchronous(Durability durability) {
  if (std::exchange(synchronous_, durability) != durability) {
    (void)execute(durability == Durability::lossOfPower ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=NORMAL");
  }
}

void SqliteUserDefaults::committed(Durability durability) {
  unsynchronized_ = durability == Durability::endOfProcess;
  announceWrite();
}

Expected<void, std::string> SqliteUserDefaults::execute(const char* sql) {
  if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    return unexpected(reason());
  }
  return {};
}

/// Why the last operation failed.
std::string SqliteUserDefaults::reason() const {
  return database_ ? sqlite3_errmsg(database_.get()) : problem_.value_or("");
}

void SqliteUserDefaults::synchronize() {
  if (std::exchange(unsynchronized_, false)) {
    sqlite3_wal_checkpoint_v2(database_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  }
}

/// A transaction becomes visible only after its last write to the log, when a watcher of the log has already been woken
/// and has found nothing new. So a writer announces its commit by touching the database file.
void SqliteUserDefaults::announceWrite() const { utimensat(AT_FDCWD, file_.c_str(), nullptr, 0); }

int SqliteUserDefaults::changeDescriptor() {
  if (inotify_ < 0 && database_) {
    inotify_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    // Other tools announce nothing, but close the file when they are done.
    if (inotify_ >= 0 && inotify_add_watch(inotify_, file_.c_str(), IN_ATTRIB | IN_CLOSE_WRITE) < 0) {
      ::close(std::exchange(inotify_, -1));
    }
    refresh();
    if (!unannounced_.empty()) {
      announceWrite();  // makes the descriptor readable
    }
  }
  return inotify_;
}

void SqliteUserDefaults::handleChange() {
  std::array<char, 4096> events{};
  while (inotify_ >= 0 && ::read(inotify_, events.data(), events.size()) > 0) {
  }
  refresh();
  for (const auto& key : std::exchange(unannounced_, {})) {
    changed.emit(key);
  }
}

}  // namespace quillmark
