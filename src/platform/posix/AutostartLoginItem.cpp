#include "platform/posix/AutostartLoginItem.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

#include <fcntl.h>
#include <unistd.h>

#include "base/Text.h"

namespace quillmark {
namespace {

constexpr std::string_view entryGroup = "[Desktop Entry]";

/// The keys of the main group, localised ones left out.
std::map<std::string, std::string> readEntry(const std::string& file) {
  std::map<std::string, std::string> keys;
  std::ifstream stream(file);
  bool inEntry = false;
  for (std::string line; std::getline(stream, line);) {
    const auto trimmed = text::trimmed(line);
    if (trimmed.starts_with('[')) {
      inEntry = trimmed == entryGroup;
    } else if (const auto equals = trimmed.find('='); inEntry && equals != trimmed.npos) {
      keys.emplace(text::trimmed(trimmed.substr(0, equals)), text::trimmed(trimmed.substr(equals + 1)));
    }
  }
  return keys;
}

std::string reason(const std::string& what) { return what + ": " + std::strerror(errno); }

/// Writes the whole file and waits for the disk.
Expected<void, std::string> write(const std::string& file, const std::string& contents) {
  const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (descriptor < 0) {
    return unexpected(reason(file));
  }
  std::size_t written = 0;
  while (written < contents.size()) {
    const auto count = ::write(descriptor, contents.data() + written, contents.size() - written);
    if (count < 0 && errno != EINTR) {
      break;
    }
    written += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  const bool good = written == contents.size() && fsync(descriptor) == 0;
  const std::string problem = good ? "" : reason(file);
  close(descriptor);
  if (!good) {
    unlink(file.c_str());
    return unexpected(problem);
  }
  return {};
}

}  // namespace

std::string desktopEntryExec(const std::string& program) {
  // A quoted argument escapes these with a backslash; the string value then doubles each backslash.
  std::string quoted;
  for (const char c : program) {
    switch (c) {
      case '"':
      case '`':
      case '$':
        quoted += "\\\\";
        break;
      case '\\':
        quoted += "\\\\\\";
        break;
      case '%':
        quoted += '%';
        break;
      default:
        break;
    }
    quoted += c;
  }
  return '"' + quoted + '"';
}

AutostartLoginItem::AutostartLoginItem(const std::string& directory, std::string program)
    : file_(directory + "/org.quillmark.Quillmark.desktop"), program_(std::move(program)) {}

bool AutostartLoginItem::isEnabled() const {
  auto keys = readEntry(file_);
  return keys["Type"] == "Application" && keys["Exec"] == desktopEntryExec(program_) && keys["Hidden"] != "true" &&
         keys["X-GNOME-Autostart-enabled"] != "false";
}

Expected<void, std::string> AutostartLoginItem::registerItem() {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(file_).parent_path(), error);
  const std::string beside = file_ + ".new";
  std::string entry(entryGroup);
  entry += "\nType=Application\nName=Quillmark\nIcon=org.quillmark.Quillmark\nExec=";
  entry += desktopEntryExec(program_);
  entry += "\nTerminal=false\nStartupNotify=false\nX-GNOME-Autostart-enabled=true\n";
  auto written = write(beside, entry);
  if (!written) {
    return written;
  }
  if (rename(beside.c_str(), file_.c_str()) != 0) {
    const std::string problem = reason(file_);
    unlink(beside.c_str());
    return unexpected(problem);
  }
  return {};
}

Expected<void, std::string> AutostartLoginItem::unregisterItem() {
  if (unlink(file_.c_str()) != 0 && errno != ENOENT) {
    return unexpected(reason(file_));
  }
  return {};
}

}  // namespace quillmark
