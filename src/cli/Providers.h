#pragma once

#include <string>

namespace quillmark::cli {

// What can be asked of the backends; each returns the program's exit status.

/// One line for each provider: slug, name, type, and whether it is enabled.
int listProviders(const std::string& dataDirectory);
/// Whether the provider of this name, slug or id answers with the stored key.
int verifyProvider(const std::string& dataDirectory, const std::string& name);
/// The identifiers of the provider's models, a line each, as the backend lists them now.
int listModels(const std::string& dataDirectory, const std::string& name);

}  // namespace quillmark::cli
