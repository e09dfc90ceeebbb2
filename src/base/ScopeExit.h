#pragma once

#include <utility>

namespace quillmark {

/// Calls a function at the end of its scope. What is declared before it still exists then.
template <class Function>
class ScopeExit {
 public:
  explicit ScopeExit(Function function) : function_(std::move(function)) {}
  ScopeExit(const ScopeExit&) = delete;
  ScopeExit& operator=(const ScopeExit&) = delete;
  ~ScopeExit() { function_(); }

 private:
  Function function_;
};

}  // namespace quillmark
