#pragma once

#include <optional>
#include <string>

namespace quillmark::cli {

/// Writes the value under a key to standard output.
int readSettings(const std::string& dataDirectory, const std::string& key);

/// Writes every key that the program knows, its form, and what is stored or holds without a value; then what is stored
/// besides. Secrets are not shown.
int listSettings(const std::string& dataDirectory);

/// Stores a value; `type` is "bool", "int", "double" or "string". A key that the program knows needs no type, and takes
/// no other.
int writeSetting(const std::string& dataDirectory, const std::string& key, const std::optional<std::string>& type,
                 const std::string& value);

int removeSetting(const std::string& dataDirectory, const std::string& key);

}  // namespace quillmark::cli
