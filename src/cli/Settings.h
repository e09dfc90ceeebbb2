#pragma once

#include <string>
#include <vector>

namespace quillmark::cli {

/// Writes the value under a key to standard output.
int readSettings(const std::string& dataDirectory, const std::string& key);

/// Writes every key that the program knows, its form, and what is stored or holds without a value; then what is stored
/// besides. Secrets are not shown.
int listSettings(const std::string& dataDirectory);

/// Stores a value. Before it may stand its type, "bool", "int", "double" or "string"; a key that the program knows
/// needs none, and takes no other.
int writeSetting(const std::string& dataDirectory, const std::string& key, std::vector<std::string> typeAndValue);

int removeSetting(const std::string& dataDirectory, const std::string& key);

}  // namespace quillmark::cli
