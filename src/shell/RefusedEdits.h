#pragma once

#include <string>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/AlertHandler.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// Tells the user, in an alert, that a change could not be stored. One alert covers everything refused until it is
/// closed. Main thread only.
class RefusedEdits {
 public:
  RefusedEdits(UserDefaults& defaults, AlertHandler& alerts);

 private:
  void tell(const std::string& reason);

  AlertHandler& alerts_;
  bool isTelling_ = false;
  Connection refusals_;
  Lifetime lifetime_;
};

}  // namespace quillmark
