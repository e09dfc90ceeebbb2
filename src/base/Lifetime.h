#pragma once

#include <memory>
#include <utility>

namespace quillmark {

/// A member of an object whose callbacks leave it: a guarded callable does nothing once the object is gone.
/// Declare it last, so that it goes first. The object and its guarded callables live on one thread.
class Lifetime {
 public:
  Lifetime() = default;
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  template <class Callable>
  auto guard(Callable callable) const {
    return [alive = std::weak_ptr<const char>(token_), callable = std::move(callable)](auto&&... args) mutable {
      if (!alive.expired()) {
        callable(std::forward<decltype(args)>(args)...);
      }
    };
  }

 private:
  std::shared_ptr<const char> token_ = std::make_shared<const char>();
};

}  // namespace quillmark
