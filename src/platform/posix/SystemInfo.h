#pragma once

#include <string_view>

#include "platform/Bundle.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The running kernel.
OperatingSystem operatingSystem();

/// A kernel release such as "6.1.0-18-amd64" in numbers; a part that is missing or not a number is 0.
OperatingSystem parseOperatingSystem(std::string_view name, std::string_view release);

/// The path of the file that this process was started from, even if an update has since replaced the file; empty when
/// unknown.
std::string executablePath();

/// The directory of the interface's language catalogues: installed beside this program, or in its build tree.
std::string catalogueDirectory();

/// This program as built; the executable's name is that of the file it was started from.
const Bundle& bundle();

/// Makes tr() use the language that the user has chosen for this program, or else the first of the environment's that
/// has a catalogue. Returns its code. Call once, at the start; English costs nothing.
std::string useInterfaceLanguage(UserDefaults& defaults, const Bundle& bundle);

}  // namespace quillmark
