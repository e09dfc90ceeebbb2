#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "base/RawValue.h"

namespace quillmark {

/// What opened the command menu. It decides whether a run from the menu copies the selection itself.
enum class InvocationSource { keyboardShortcut, urlHandler, menuBar, serviceProvider };

template <>
struct RawValues<InvocationSource> {
  static constexpr std::array<std::pair<InvocationSource, std::string_view>, 4> table{{
      {InvocationSource::keyboardShortcut, "keyboardShortcut"},
      {InvocationSource::urlHandler, "urlHandler"},
      {InvocationSource::menuBar, "menuBar"},
      {InvocationSource::serviceProvider, "serviceProvider"},
  }};
};

}  // namespace quillmark
