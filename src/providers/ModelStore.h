#pragma once

#include <vector>

#include "base/Signal.h"
#include "platform/StoredRecords.h"
#include "providers/ProviderModel.h"

namespace quillmark {

/// The models that are known for each type of provider. Main thread only.
class ModelStore {
 public:
  static constexpr const char* userDefaultsKey = keys::models.name;  ///< a string that holds the JSON array

  /// Reads the stored list; one that does not decode is set aside and reads as empty.
  explicit ModelStore(UserDefaults& defaults);

  Observable<std::vector<ProviderModel>> models;  ///< by name, in code point order

  /// In stored order.
  std::vector<ProviderModel> modelsFor(ProviderType type) const;
  /// Adds models, or replaces those of the same type and identifier. Models that don't write text are left out.
  void updateModels(const std::vector<ProviderModel>& list);
  /// Forgets the models of a type, before those come that its provider lists now.
  void cleanUpModels(ProviderType type);
  /// Adds what is known without asking anyone: each type's default model and a table of others.
  void initializeDefaultModels();

 private:
  void merge(const std::vector<ProviderModel>& list, Durability durability);
  void store(Durability durability);

  StoredValue stored_;
};

}  // namespace quillmark
