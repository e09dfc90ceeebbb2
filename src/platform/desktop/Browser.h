#pragma once

#include <string>

namespace quillmark {

/// Opens a page in the user's browser; writes a log line when that is not possible.
void openInBrowser(const std::string& url);

}  // namespace quillmark
