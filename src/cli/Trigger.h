#pragma once

#include <string>

namespace quillmark::cli {

/// Asks the running desktop program to run a command on the selection of the application in front, or, for
/// "command-menu", to open or close the command menu. Returns the exit status.
int trigger(const std::string& slug);

}  // namespace quillmark::cli
