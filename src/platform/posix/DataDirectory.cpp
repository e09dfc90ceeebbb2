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

}  // namespace

std::string dataDirectory(std::string_view chosen) {
  if (!chosen.empty()) {
    return withoutTrailingSlash(std::string(chosen));
  }
  if (auto named = environment("QUILLMARK_DATA_DIR"); !named.empty()) {
    return withoutTrailingSlash(std::move(named));
  }
  // A relative path there is invalid and ignored.
  auto dataHome = environment("XDG_DATA_HOME");
  if (!dataHome.starts_with('/')) {
    dataHome = withoutTrailingSlash(homeDirectory()) + "/.local/share";
  }
  return withoutTrailingSlash(std::move(dataHome)) + "/quillmark";
}

std::string defaultsFile(const std::string& directory) { return directory + "/defaults.sqlite"; }

}  // namespace quillmark
