#pragma once

#include <QString>
#include <string_view>

namespace quillmark {

/// Converts UTF-8, used everywhere below the views, to the toolkit's string.
inline QString qt(std::string_view text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }

}  // namespace quillmark
