#pragma once

#include <string_view>

#include "platform/Bundle.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The running kernel.
OperatingSystem operatingSystem();

/// A kernel release such as "6.1.0-18-amd64" in numbers; a part that is missing or no number is 0.
OperatingSystem parseOperatingSystem(std::string_view name, std::string_view release);

/// The file that this process was started from; empty when the system does not tell. An update that has replaced it
/// leaves the path as it was.
std::string executablePath();

/// Where the catalogues of the interface's languages are: installed beside this program, or in its build tree.
std::string catalogueDirectory();

/// This program as it was built; the executable's name is that of the file it was started from.
const Bundle& bundle();

/// Makes tr() speak the language that the user has chosen for this program, or else the first of the environment's that
/// it has. Returns its code. Once, at the start; English costs nothing.
std::string useInterfaceLanguage(UserDefaults& defaults, const Bundle& bundle);

}  // namespace quillmark
