#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "commands/ConfigurableItem.h"
#include "platform/StoredList.h"

namespace quillmark {

/// A list that the user can edit: which items are offered, in which order, and which one a shortcut takes. It is read
/// on first use. Every edit returns false when it could not be stored; the list is then unchanged. Main thread only.
class ConfigurableStore {
  StoredList<ConfigurableItem> list_;

 public:
  using Items = std::vector<ConfigurableItem>;
  using Edit = std::function<void(Items&)>;

  ConfigurableStore(const ConfigurableStore&) = delete;
  ConfigurableStore& operator=(const ConfigurableStore&) = delete;
  virtual ~ConfigurableStore() = default;

  /// Empty until the list has been read; then what is stored.
  const Observable<Items>& itemsCache{list_.records()};

  /// Never empty. A stored value that is not a list of distinct, named items is set aside and replaced by the default
  /// items.
  const Items& items();
  /// By `order`, ascending.
  Items enabledItems();
  /// What a menu shows for an item.
  virtual std::string displayName(const ConfigurableItem& item) const = 0;
  /// The built-in list.
  virtual Items defaultItems() const = 0;

  [[nodiscard]] bool save(const Edit& edit);
  [[nodiscard]] bool setEnabled(const std::string& id, bool isEnabled);
  [[nodiscard]] bool setAllEnabled(bool isEnabled);
  /// Gives the items with these ids their positions, and puts the others after them. An unknown id leaves a gap.
  [[nodiscard]] bool reorder(const std::vector<std::string>& ids);
  /// Saves once. Returns how many ids could not be removed: unknown ones, and the last item of the list.
  std::size_t remove(const std::vector<std::string>& ids);

  /// The id that is stored for the shortcut.
  std::optional<std::string> defaultSelection() const;
  /// False when no enabled item has this name.
  bool setDefaultSelection(const std::string& name);
  /// The selected item while it is enabled, else the first enabled one.
  std::optional<ConfigurableItem> defaultItem();

 protected:
  /// The keys of the items, of the selection, and of an old version's selection.
  struct Keys {
    const StoredKey<Data>& items;
    const StoredKey<std::optional<std::string>>& selection;
    const StoredKey<std::optional<std::string>>& oldSelection;
  };
  ConfigurableStore(UserDefaults& defaults, const Keys& keys);

  /// Migrates the selection of an old version. Called by the subclass's constructor.
  void migrateLegacySelection();
  /// Puts the item at the end of the list. False also when it clashes with a stored one.
  [[nodiscard]] bool append(ConfigurableItem item, const std::function<bool(const ConfigurableItem&)>& clashes);

 private:
  void load();

  UserDefaults& defaults_;
  Keys keys_;
};

}  // namespace quillmark
