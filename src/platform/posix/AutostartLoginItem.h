#pragma once

#include <string>

#include "platform/LoginItem.h"

namespace quillmark {

/// An entry in the user's autostart directory, as the Desktop Application Autostart Specification of freedesktop.org
/// tells. It starts this very program file: an entry that names another one, such as a copy that was moved away, does
/// not count as enabled, so that the user sees that nothing would start.
class AutostartLoginItem final : public LoginItem {
 public:
  /// `directory` is the autostart directory, which need not exist; `program` an absolute path.
  AutostartLoginItem(const std::string& directory, std::string program);

  bool isEnabled() const override;
  /// The file is written beside and renamed.
  Expected<void, std::string> registerItem() override;
  Expected<void, std::string> unregisterItem() override;

  const std::string& file() const { return file_; }

 private:
  std::string file_;
  std::string program_;
};

/// The value of an `Exec` key that starts one program without arguments: quoted, then escaped, as the Desktop Entry
/// Specification of freedesktop.org tells.
std::string desktopEntryExec(const std::string& program);

}  // namespace quillmark
