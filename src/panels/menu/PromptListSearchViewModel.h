#pragma once

#include <chrono>
#include <string>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// The search field of a list that is not to be filtered at each key. Main thread only.
class PromptListSearchViewModel {
 public:
  static constexpr Duration debounce = std::chrono::milliseconds(300);

  explicit PromptListSearchViewModel(MainQueue& queue);

  Observable<std::string> searchText;
  /// What `searchText` has been for as long as `debounce`; set only to another text than it holds.
  Observable<std::string> debouncedSearchText;

 private:
  MainQueue& queue_;
  TimerHandle pending_;
  Connection changes_;
  Lifetime lifetime_;
};

}  // namespace quillmark
