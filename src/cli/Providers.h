#pragma once

#include <optional>
#include <string>

namespace quillmark::cli {

// Operations on the configured backends; each returns the program's exit status. A name is the configuration's name,
// slug or id.

/// One line for each provider: slug, name, type, and whether it is enabled.
int listProviders(const std::string& dataDirectory);
/// A new, enabled configuration of a kind of backend ("groq", "openai-compatible"). Prints its line: a second one of a
/// kind gets a number after its name.
int addProvider(const std::string& dataDirectory, const std::string& type, const std::string& name);

struct ProviderChanges {
  bool readsKey = false;  ///< from the first line of standard input, so that no shell remembers it
  std::optional<std::string> baseURL;
  std::optional<std::string> defaultModel;
  std::optional<bool> enabled;
  bool makesDefault = false;  ///< commands that name no provider use it
};
int changeProvider(const std::string& dataDirectory, const std::string& name, const ProviderChanges& changes);

/// Whether the provider answers with the stored key.
int verifyProvider(const std::string& dataDirectory, const std::string& name);
/// Prints the identifiers of the provider's models, one per line, as the backend lists them now.
int listModels(const std::string& dataDirectory, const std::string& name);

}  // namespace quillmark::cli
