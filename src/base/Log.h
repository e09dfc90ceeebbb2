#pragma once

#include <functional>
#include <string_view>

namespace quillmark {

/// Writes one plain line, with no level and no time stamp. Any thread. Lines may contain the user's text.
void log(std::string_view line);

/// Where lines go instead of standard output; an empty function restores standard output. Set it before other threads
/// start. The sink may be called on any thread.
void setLogSink(std::function<void(std::string_view)> sink);

}  // namespace quillmark
