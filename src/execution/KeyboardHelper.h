#pragma once

#include "platform/KeyInjector.h"

namespace quillmark {

/// Simulates the copy and paste keys.
class KeyboardHelper {
 public:
  explicit KeyboardHelper(KeyInjector& injector) : injector_(injector) {}

  void pressCopy() { press(KeyCode::c); }
  void pressPaste() { press(KeyCode::v); }

 private:
  void press(KeyCode key);

  KeyInjector& injector_;
};

}  // namespace quillmark
