#pragma once

#include <optional>
#include <string>

namespace quillmark::cli {

/// Writes the value under a key to standard output.
int readSettings(const std::string& dataDirectory, const std::string& key);

/// Writes every known key with its type and its value or fallback, then what else is stored. Secrets are not shown.
int listSettings(const std::string& dataDirectory);

/// Stores a value; `type` is "bool", "int", "double" or "string". A known key needs no type and takes no other.
int writeSetting(const std::string& dataDirectory, const std::string& key, const std::optional<std::string>& type,
                 const std::string& value);

int removeSetting(const std::string& dataDirectory, const std::string& key);

}  // namespace quillmark::cli
