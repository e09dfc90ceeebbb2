#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// What the program knows about itself. A missing value is shown as "Unknown" where a text needs one.
struct Bundle {
  std::optional<std::string> executableName;
  std::optional<std::string> identifier;
  std::optional<std::string> shortVersion;  ///< such as "2.13.0"
  std::optional<std::string> buildNumber;
  std::vector<std::string> localizations;  ///< codes of the languages that the interface speaks, such as "de"
};

/// The operating system in its own words, such as "Linux" and 6, 1, 0.
struct OperatingSystem {
  std::string name;
  int major = 0;
  int minor = 0;
  int patch = 0;

  /// "Linux 6.1.0".
  std::string versionString() const {
    std::string text = name;
    text += " " + std::to_string(major);
    text += "." + std::to_string(minor);
    text += "." + std::to_string(patch);
    return text;
  }
};

}  // namespace quillmark
