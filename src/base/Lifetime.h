#pragma once

#include <memory>
#include <utility>

namespace quillmark {

/// A member of an object that hands out callbacks: a guarded callable does nothing once the object is destroyed.
/// Declare it last, so that it is destroyed first. The object and its guarded callables belong to one thread.
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
