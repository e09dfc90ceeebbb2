#pragma once

#include <tl/expected.hpp>

namespace quillmark {

/// A value, or the reason why there is none.
template <class T, class E>
using Expected = tl::expected<T, E>;

template <class E>
auto unexpected(E&& error) {
  return tl::make_unexpected(std::forward<E>(error));
}

}  // namespace quillmark
