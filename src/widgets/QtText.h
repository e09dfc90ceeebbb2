#pragma once

#include <QString>
#include <string_view>

namespace quillmark {

/// UTF-8, as everything below the views has it, in the toolkit's form.
inline QString qt(std::string_view text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }

}  // namespace quillmark
