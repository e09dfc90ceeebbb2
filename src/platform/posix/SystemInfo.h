#pragma once

#include <string_view>

#include "platform/Bundle.h"

namespace quillmark {

/// The running kernel.
OperatingSystem operatingSystem();

/// A kernel release such as "6.1.0-18-amd64" in numbers; a part that is missing or no number is 0.
OperatingSystem parseOperatingSystem(std::string_view name, std::string_view release);

/// The file that this process was started from; empty when the system does not tell. An update that has replaced it
/// leaves the path as it was.
std::string executablePath();

/// This program as it was built; the executable's name is that of the file it was started from.
Bundle bundle();

}  // namespace quillmark
