#include "panels/menu/PromptListSearchViewModel.h"

namespace quillmark {

PromptListSearchViewModel::PromptListSearchViewModel(MainQueue& queue) : queue_(queue) {
  changes_ = searchText.observe([this](const std::string& /*text*/) {
    pending_.cancel();
    pending_ = queue_.after(debounce, lifetime_.guard([this] {
      if (debouncedSearchText.get() != searchText.get()) {
        debouncedSearchText.set(searchText);
      }
    }));
  });
}

}  // namespace quillmark
