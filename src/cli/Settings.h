#pragma once

#include <string>

namespace quillmark::cli {

/// Writes the value under a key to standard output.
int readSettings(const std::string& dataDirectory, const std::string& key);

/// Stores a value; `type` is "bool", "int", "double" or "string".
int writeSetting(const std::string& dataDirectory, const std::string& key, const std::string& type,
                 const std::string& value);

int removeSetting(const std::string& dataDirectory, const std::string& key);

}  // namespace quillmark::cli
