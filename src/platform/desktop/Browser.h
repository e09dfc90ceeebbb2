#pragma once

#include <string>

namespace quillmark {

/// Opens a page in the user's browser; a log line says when there is none.
void openInBrowser(const std::string& url);

}  // namespace quillmark
