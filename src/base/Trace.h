#pragma once

namespace quillmark::trace {

/// Opens the file that QUILLMARK_TRACE names, if it names one. Call once, before other threads start.
void open();

/// Appends "<nanoseconds of the monotonic clock> <event>" to the trace; without a trace it costs one test.
/// Any thread. The demo and the bench read the distance between the stages of a run from it.
void mark(const char* event);

}  // namespace quillmark::trace
