#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmark::service {

/// The form in which a streamed answer travels: plain text in which line feed, tab and carriage return are a backslash
/// and "n", "t" or "r". The form has no escape for the backslash itself, so a backslash followed by one of these
/// letters in the answer (as in C:\temp) arrives as the control character; a reader can't tell the two apart.
std::string escapedForStream(std::string_view text);

/// An escaped text in pieces of about `size` bytes. No piece ends inside a UTF-8 character or between a backslash and
/// the letter after it. They point into `escaped`.
std::vector<std::string_view> streamChunks(std::string_view escaped, std::size_t size);

}  // namespace quillmark::service
