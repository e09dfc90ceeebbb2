#pragma once

#include <utility>

namespace quillmark {

/// Calls a function when it goes. What is declared before it is still there then.
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
