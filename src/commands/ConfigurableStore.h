#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "commands/ConfigurableItem.h"
#include "platform/StoredRecords.h"

namespace quillmark {

/// A list that the user can edit: which items are offered, in which order, and which one a shortcut takes. It is read
/// at the first use and never again. Main thread only.
class ConfigurableStore {
 public:
  using Items = std::vector<ConfigurableItem>;

  ConfigurableStore(const ConfigurableStore&) = delete;
  ConfigurableStore& operator=(const ConfigurableStore&) = delete;
  virtual ~ConfigurableStore() = default;

  /// Absent until the list has been read; then what was last saved.
  Observable<std::optional<Items>> itemsCache;

  /// Never empty. What is stored and is no list of distinct, named items is set aside and replaced by the default
  /// items.
  const Items& items();
  /// By `order`, ascending.
  Items enabledItems();
  /// What a menu shows for an item.
  virtual std::string displayName(const ConfigurableItem& item) const = 0;
  /// The built-in list.
  virtual Items defaultItems() const = 0;

  /// False when the list could not be stored; the old one then stands.
  bool save(Items items);
  void setEnabled(const std::string& id, bool isEnabled);
  void setAllEnabled(bool isEnabled);
  /// Gives the items with these ids their positions, and puts the others behind them. An id without an item leaves a
  /// gap.
  void reorder(const std::vector<std::string>& ids);
  /// Saves once. Returns how many ids could not be removed: unknown ones, and the last item of the list.
  std::size_t remove(const std::vector<std::string>& ids);

  /// The id that is stored for the shortcut.
  std::optional<std::string> defaultSelection() const;
  /// False when no enabled item has this name.
  bool setDefaultSelection(const std::string& name);
  /// The selected item while it is enabled, else the first enabled one.
  std::optional<ConfigurableItem> defaultItem();

 protected:
  /// Where the items, the selection, and the selection of an old version are stored.
  struct Keys {
    const StoredKey& items;
    const StoredKey& selection;
    const StoredKey& oldSelection;
  };
  ConfigurableStore(UserDefaults& defaults, const Keys& keys);

  /// Takes over the selection of an old version. To be called by the subclass's constructor.
  void migrateLegacySelection();
  bool append(ConfigurableItem item);

 private:
  Items load();

  UserDefaults& defaults_;
  Keys keys_;
  StoredRecords<ConfigurableItem> stored_;
};

}  // namespace quillmark
