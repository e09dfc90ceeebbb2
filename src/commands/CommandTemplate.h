#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Json.h"
#include "commands/Command.h"

namespace quillmark {

/// A ready-made prompt as the hosted service sends it.
struct CommandTemplate {
  std::string id;
  std::optional<std::string> slug;
  std::string title;
  std::optional<std::string> description;
  std::optional<std::string> content;
  std::optional<std::string> prompt;  ///< goes before `content`
  std::optional<std::string> category;
  std::vector<std::string> tags;
  std::string createdAt;
  std::string updatedAt;
  std::optional<std::string> profileId;
  bool isPublic = false;

  /// A new custom prompt with the template's own slug, if it has one. An unknown category becomes customAction.
  Command toCommand() const;
};

/// Throws DecodingError.
CommandTemplate commandTemplateFromJson(const Json& json, const std::string& path = {});

}  // namespace quillmark
