#pragma once

#include <vector>

#include "base/Signal.h"
#include "platform/StoredList.h"
#include "providers/ProviderModel.h"

namespace quillmark {

/// The known models of each type of provider. Main thread only.
class ModelStore {
  StoredList<ProviderModel> list_;

 public:
  static constexpr const char* userDefaultsKey = keys::models.name;  ///< its value is a string with the JSON array

  /// Reads the stored list; one that does not decode is set aside and reads as empty.
  explicit ModelStore(UserDefaults& defaults);

  const Observable<std::vector<ProviderModel>>& models{list_.records()};  ///< by name, in code point order

  /// In stored order.
  std::vector<ProviderModel> modelsFor(ProviderType type) const;
  /// Adds models, or replaces those of the same type and identifier. Models that don't write text are left out. False
  /// when they could not be stored.
  [[nodiscard]] bool updateModels(const std::vector<ProviderModel>& list);
  /// Removes the models of a type, before its provider's current ones are added. False when that could not be stored.
  [[nodiscard]] bool cleanUpModels(ProviderType type);
  /// Adds the built-in models: each type's default model and a table of others.
  void initializeDefaultModels();

 private:
  bool merge(const std::vector<ProviderModel>& list, Durability durability);
};

}  // namespace quillmark
