#pragma once

#include "base/Signal.h"
#include "platform/LoginItem.h"

namespace quillmark {

/// The switch "Launch on Login". The desktop holds its state; nothing of it is stored here. Main thread only.
class LaunchAtLogin {
 public:
  explicit LaunchAtLogin(LoginItem& item) : item_(item) {}

  bool isEnabled() const { return item_.isEnabled(); }
  /// A failure is logged; isEnabled() then returns the actual state.
  void setEnabled(bool enabled);

  Signal<> willChange;  ///< emitted before anything is done

 private:
  LoginItem& item_;
};

}  // namespace quillmark
