#pragma once

#include <string>

#include "base/Expected.h"

namespace quillmark {

/// Whether the desktop starts this program when the user logs in. Main thread only.
class LoginItem {
 public:
  LoginItem() = default;
  LoginItem(const LoginItem&) = delete;
  LoginItem& operator=(const LoginItem&) = delete;
  virtual ~LoginItem() = default;

  /// The desktop's current state, which the user may have changed elsewhere.
  virtual bool isEnabled() const = 0;
  /// The error is a sentence.
  virtual Expected<void, std::string> registerItem() = 0;
  virtual Expected<void, std::string> unregisterItem() = 0;
};

}  // namespace quillmark
