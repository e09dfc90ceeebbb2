#pragma once

#include <string>

#include "platform/LoginItem.h"

namespace quillmark {

/// An entry in the user's autostart directory (freedesktop.org, Desktop Application Autostart Specification). It starts
/// this very program file: an entry for another path, such as a copy that has since moved, does not count as enabled,
/// so that the user sees that nothing would start.
class AutostartLoginItem final : public LoginItem {
 public:
  /// `directory` is the autostart directory, which need not exist; `program` an absolute path.
  AutostartLoginItem(const std::string& directory, std::string program);

  bool isEnabled() const override;
  /// Writes a temporary file and renames it.
  Expected<void, std::string> registerItem() override;
  Expected<void, std::string> unregisterItem() override;

  const std::string& file() const { return file_; }

 private:
  std::string file_;
  std::string program_;
};

/// The value of an `Exec` key that starts one program without arguments: quoted, then escaped (freedesktop.org, Desktop
/// Entry Specification).
std::string desktopEntryExec(const std::string& program);

}  // namespace quillmark
