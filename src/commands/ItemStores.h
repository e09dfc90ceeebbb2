#pragma once

#include "commands/ConfigurableStore.h"
#include "commands/UserAction.h"

namespace quillmark {

/// The store of each list.
struct ItemStores {
  ConfigurableStore& languages;
  ConfigurableStore& tones;

  ConfigurableStore& operator[](ItemList list) const { return list == ItemList::languages ? languages : tones; }
};

}  // namespace quillmark
