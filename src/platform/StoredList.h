#pragma once

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/Json.h"
#include "base/Signal.h"
#include "platform/StoredValue.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// How records are written: on one line, or laid out for people.
enum class JsonLayout { compact, pretty };

/// What was found under a list's key.
struct LoadedList {
  enum class Found { list, nothing, unusable };
  Found found = Found::nothing;
  std::string problem;  ///< of an unusable value
};

/// How a list's records are read and written, and what applies while none is stored.
template <class T>
struct StoredListTraits {
  /// Reads one record at a path. Throws DecodingError.
  std::function<T(const Json&, const std::string&)> read;
  JsonLayout layout = JsonLayout::compact;
  /// Makes the list that applies while no usable one is stored; called at most once. Without it that list is empty.
  std::function<std::vector<T>()> initial = {};
  /// Why a list whose records decode is still unusable; nothing for a usable list.
  std::function<std::optional<std::string>(const std::vector<T>&)> problem = {};
  /// Whether a stored list without records counts as not stored.
  bool emptyIsNone = false;
  /// Adds to a freshly read list what this process knows and has not stored yet.
  std::function<void(std::vector<T>&)> recall = {};
};

/// One of the user's lists, kept as a JSON array under one key. It shows what is stored: an edit is applied to what the
/// database holds at that moment, in one transaction, and is shown once it is stored; what another process writes is
/// shown too. A value that is not a usable list is set aside before it is overwritten. Main thread only.
template <class T>
class StoredList {
 public:
  using Records = std::vector<T>;
  using Traits = StoredListTraits<T>;

  StoredList(UserDefaults& defaults, const StoredKey<Data>& key, Traits traits)
      : StoredList(defaults, key.name, true, std::move(traits)) {}
  /// For an array that is stored as a string.
  StoredList(UserDefaults& defaults, const StoredKey<std::string>& key, Traits traits)
      : StoredList(defaults, key.name, false, std::move(traits)) {}
  StoredList(const StoredList&) = delete;
  StoredList& operator=(const StoredList&) = delete;

  const std::string& key() const { return value_.key(); }
  /// Empty before load().
  const Observable<Records>& records() const { return records_; }
  /// Another process has changed the list; the records are the new ones already.
  Signal<> followed;

  /// Shows what is stored, or the initial list, and follows every change from now on.
  LoadedList load() {
    Read now = read();
    if (now.loaded.found == LoadedList::Found::unusable) {
      (void)value_.setAside(now.loaded.problem);  // edit() tries again before it writes
    }
    loaded_ = true;
    show(std::move(now));
    return last_;
  }
  bool isLoaded() const { return loaded_; }

  /// Applies a change, a function of Records&. What else the change stores belongs to the same transaction; if it
  /// returns a bool, false drops the edit. Returns false when nothing was stored: the list is unchanged, and unless the
  /// change itself dropped the edit, UserDefaults::refused was emitted.
  template <class Change>
  [[nodiscard]] bool edit(Change&& change, Durability durability = Durability::lossOfPower) {
    Read next;
    ++edits_;
    const bool stored = defaults_.transaction(
        [&] {
          next = present();
          if (next.loaded.found == LoadedList::Found::unusable && !value_.setAside(next.loaded.problem)) {
            return false;
          }
          if (!apply(change, next.records) || !defaults_.set(key(), encoded(next.records))) {
            return false;
          }
          next.revision = defaults_.revision(key());
          return true;
        },
        durability);
    --edits_;
    if (stored && defaults_.revision(key()) == next.revision) {
      loaded_ = true;
      next.loaded = {LoadedList::Found::list, {}};
      show(std::move(next));
    } else {
      follow();  // an observer of something stored in the same transaction has already edited the list
    }
    return stored;
  }

  /// Changes the records without storing them and without notifying anyone; Traits::recall must be able to redo it.
  template <class Change>
  void changeUnstored(Change&& change) {
    records_.mutateQuietly(std::forward<Change>(change));
  }

 private:
  /// What the database held, as of a revision.
  struct Read {
    Records records;
    LoadedList loaded;
    std::uint64_t revision = 0;
  };

  StoredList(UserDefaults& defaults, const char* key, bool isData, Traits traits)
      : defaults_(defaults), value_(defaults, key), isData_(isData), traits_(std::move(traits)) {
    changes_ = defaults_.changed.connect([this](const std::string& changed) {
      if (changed == value_.key() && edits_ == 0) {
        follow();
      }
    });
  }

  template <class Change>
  static bool apply(Change& change, Records& records) {
    if constexpr (std::is_void_v<std::invoke_result_t<Change&, Records&>>) {
      change(records);
      return true;
    } else {
      return change(records);
    }
  }

  DefaultsValue encoded(const Records& records) const {
    Json array = Json::array();
    for (const auto& record : records) {
      array.push_back(toJson(record));
    }
    std::string text = traits_.layout == JsonLayout::pretty ? toPrettyText(array) : toText(array);
    return isData_ ? DefaultsValue(Data{std::move(text)}) : DefaultsValue(std::move(text));
  }

  /// What is stored now; not decoded again when this list already has it.
  Read present() {
    if (loaded_ && defaults_.revision(key()) == revision_) {
      return {records_.get(), last_, revision_};
    }
    return read();
  }

  Read read() {
    using enum LoadedList::Found;
    Read result;
    result.revision = defaults_.revision(key());  // first: any later write changes the revision
    try {
      if (const auto text = storedText()) {
        result.records = decodeArray<T>(parseJson(*text), traits_.read);
        if (auto problem = traits_.problem ? traits_.problem(result.records) : std::nullopt) {
          throw DecodingError({}, *problem);
        }
        result.loaded.found = result.records.empty() && traits_.emptyIsNone ? nothing : list;
      }
    } catch (const DecodingError& error) {
      result.loaded = {unusable, error.what()};
    }
    if (result.loaded.found != list) {
      result.records = initial();
    }
    if (traits_.recall) {
      traits_.recall(result.records);
    }
    return result;
  }

  /// Nothing when nothing is stored; an empty value counts as that. Throws DecodingError.
  std::optional<std::string> storedText() const {
    auto value = defaults_.value(key());
    std::string* text = nullptr;
    if (value && isData_) {
      auto* const data = std::get_if<Data>(&*value);
      text = data == nullptr ? nullptr : &data->bytes;
    } else if (value) {
      text = std::get_if<std::string>(&*value);
    }
    if (value && text == nullptr) {
      throw DecodingError({}, isData_ ? "is no data" : "is no string");
    }
    return text == nullptr || text->empty() ? std::nullopt : std::optional(std::move(*text));
  }

  const Records& initial() {
    if (!initial_) {
      initial_ = traits_.initial ? traits_.initial() : Records();
    }
    return *initial_;
  }

  void show(Read now) {
    revision_ = now.revision;
    last_ = std::move(now.loaded);
    records_.set(std::move(now.records));
  }

  void follow() {
    if (!loaded_ || defaults_.revision(key()) == revision_) {
      return;
    }
    Read now = read();
    if (now.loaded.found == LoadedList::Found::unusable) {
      now.records = records_.get();  // the records shown are better than an unreadable value
    }
    if (now.records == records_.get()) {
      revision_ = now.revision;
      last_ = std::move(now.loaded);
      return;
    }
    show(std::move(now));
    followed.emit();
  }

  UserDefaults& defaults_;
  StoredValue value_;
  bool isData_;
  Traits traits_;
  Observable<Records> records_;
  std::optional<Records> initial_;
  bool loaded_ = false;
  std::uint64_t revision_ = 0;  // of the stored value that the records come from
  LoadedList last_;
  int edits_ = 0;  // in progress; each shows what it has stored
  Connection changes_;
};

}  // namespace quillmark
