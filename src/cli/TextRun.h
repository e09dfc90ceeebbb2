#pragma once

#include <optional>
#include <string>

namespace quillmark::cli {

/// One run of a command on a text, without a desktop.
struct TextRun {
  std::string dataDirectory;  ///< empty: the user's
  std::string slug;
  std::optional<std::string> parameter;
  std::optional<std::string> provider;  ///< name, slug or id of a configuration
  std::optional<std::string> model;
  bool stream = false;
};

/// Reads the text from standard input and writes the answer to standard output; failures go to standard error. Returns
/// the exit status.
int run(const TextRun& run);

/// Writes the slug and the name of each stored command.
int list(const std::string& dataDirectory);

}  // namespace quillmark::cli
