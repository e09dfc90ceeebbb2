#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/Signal.h"

namespace quillmark {

/// Another application, or this one. It may have quit meanwhile.
class RunningApplication {
 public:
  RunningApplication() = default;
  RunningApplication(const RunningApplication&) = delete;
  RunningApplication& operator=(const RunningApplication&) = delete;
  virtual ~RunningApplication() = default;

  virtual std::optional<std::string> bundleIdentifier() const = 0;
  virtual std::optional<std::string> localizedName() const = 0;
  /// Brings its last active window to the front. May fail; nothing waits for it.
  virtual void activate() = 0;
};

using Application = std::shared_ptr<RunningApplication>;

/// The running applications. Our own floating panels don't count as an activation of this application; its
/// ordinary windows do. Main thread only.
class Workspace {
 public:
  Workspace() = default;
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;
  virtual ~Workspace() = default;

  /// Null when no application is in front.
  virtual Application frontmostApplication() const = 0;
  /// Opens a page in the user's browser.
  virtual void openUrl(const std::string& url) = 0;

  Signal<const Application&> didActivateApplication;
};

}  // namespace quillmark
