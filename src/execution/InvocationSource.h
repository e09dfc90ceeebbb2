#pragma once

#include "base/RawValue.h"

namespace quillmark {

/// What opened the command menu. It decides whether a run from the menu copies the selection itself.
enum class InvocationSource { keyboardShortcut, urlHandler, menuBar, serviceProvider };

template <>
struct RawValues<InvocationSource> {
  static constexpr EnumTable<RawValueRow<InvocationSource>> table{{
      {InvocationSource::keyboardShortcut, "keyboardShortcut"},
      {InvocationSource::urlHandler, "urlHandler"},
      {InvocationSource::menuBar, "menuBar"},
      {InvocationSource::serviceProvider, "serviceProvider"},
  }};
};

}  // namespace quillmark
