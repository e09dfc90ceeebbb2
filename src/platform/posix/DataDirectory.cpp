#include "platform/posix/DataDirectory.h"

#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace quillmark {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

std::string homeDirectory() {
  if (auto home = environment("HOME"); !home.empty()) {
    return home;
  }
  const passwd* entry = getpwuid(getuid());
  return entry == nullptr || entry->pw_dir == nullptr ? "/" : entry->pw_dir;
}

std::string withoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') {
    path.pop_back();
  }
  return path;
}

/// A base directory of the user's. A relative path in the environment is invalid and ignored.
std::string baseDirectory(const char* variable, const char* inHome) {
  auto directory = environment(variable);
  if (!directory.starts_with('/')) {
    directory = withoutTrailingSlash(homeDirectory()) + "/" + inHome;
  }
  return withoutTrailingSlash(std::move(directory));
}

}  // namespace

std::string dataDirectory(std::string_view chosen) {
  if (!chosen.empty()) {
    return withoutTrailingSlash(std::string(chosen));
  }
  if (auto named = environment("QUILLMARK_DATA_DIR"); !named.empty()) {
    return withoutTrailingSlash(std::move(named));
  }
  return baseDirectory("XDG_DATA_HOME", ".local/share") + "/quillmark";
}

std::string autostartDirectory() { return baseDirectory("XDG_CONFIG_HOME", ".config") + "/autostart"; }

std::string defaultsFile(const std::string& directory) { return directory + "/defaults.sqlite"; }

}  // namespace quillmark
