#include "panels/menu/PromptListSearchViewModel.h"

namespace quillmark {

void PromptListSearchViewModel::setSearchText(std::string text) {
  searchText_.set(std::move(text));
  pending_.cancel();
  pending_ = queue_.after(debounce, lifetime_.guard([this] {
    if (debouncedSearchText_.get() != searchText_.get()) {
      debouncedSearchText_.set(searchText_);
    }
  }));
}

}  // namespace quillmark
