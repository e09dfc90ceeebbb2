#pragma once

#include <chrono>
#include <string>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// The search field of a list that is filtered with a debounce rather than at each key. Main thread only.
class PromptListSearchViewModel {
 public:
  static constexpr Duration debounce = std::chrono::milliseconds(300);

  explicit PromptListSearchViewModel(MainQueue& queue) : queue_(queue) {}

  const Observable<std::string>& searchText() const { return searchText_; }
  void setSearchText(std::string text);
  /// The text once it has not changed for `debounce`; set only when it differs.
  const Observable<std::string>& debouncedSearchText() const { return debouncedSearchText_; }

 private:
  MainQueue& queue_;
  Observable<std::string> searchText_;
  Observable<std::string> debouncedSearchText_;
  TimerHandle pending_;
  Lifetime lifetime_;
};

}  // namespace quillmark
