#pragma once

#include "base/Json.h"

namespace quillmark::service {

/// The ready-made prompts that the service offers, as an array of template records.
const Json& templates();

}  // namespace quillmark::service
