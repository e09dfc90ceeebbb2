#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// The directory of the user's data, without a trailing slash; it need not exist yet. The first of these that is set:
/// the argument, the environment variable QUILLMARK_DATA_DIR, `quillmark` in the data home of the XDG Base Directory
/// Specification (XDG_DATA_HOME when it is an absolute path, else ~/.local/share).
std::string dataDirectory(std::string_view chosen = {});

/// The directory of desktop entries started at login: `autostart` in the XDG config home.
std::string autostartDirectory();

/// The file of the defaults database in that directory.
std::string defaultsFile(const std::string& directory);

}  // namespace quillmark
