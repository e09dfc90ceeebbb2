#pragma once

#include <cstdint>

#include "commands/Command.h"
#include "platform/StoredRecords.h"

namespace quillmark {

/// The template catalogue as it was fetched last.
struct TemplateCache {
  explicit TemplateCache(UserDefaults& defaults)
      : templates(defaults, keys::cachedTemplates.name, commandFromJson),
        lastFetch(defaults, keys::templatesLastFetch),
        count(defaults, keys::cachedTemplatesCount) {}

  StoredRecords<Command> templates;
  Setting<double> lastFetch;  ///< seconds since 1970-01-01 00:00:00 UTC; 0: never
  Setting<std::int64_t> count;
};

}  // namespace quillmark
