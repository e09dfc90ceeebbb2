#pragma once

#include <string>

#include "base/Json.h"
#include "base/Uuid.h"

namespace quillmark {

/// A value that fills the placeholder "{{key}}" of a prompt template.
struct Variable {
  Uuid id;
  std::string key;
  std::string value;
  std::string comment;      ///< a hint shown to the user
  bool isComputed = false;  ///< computed by the system, not editable, never stored

  friend bool operator==(const Variable&, const Variable&) = default;
};

Json toJson(const Variable& variable);
/// Throws DecodingError; all five fields are required.
Variable variableFromJson(const Json& json, const std::string& path = {});

}  // namespace quillmark
