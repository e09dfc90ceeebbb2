#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/LiveDesktop.h"
#include "support/TestHttpServer.h"

namespace quillmark::demo {

struct Outcome {
  bool passed = false;
  std::string reason;
};

/// What starts a run; throws std::runtime_error when it can't.
using Trigger = std::function<void(LiveDesktop&)>;

/// Types a text, selects it, triggers and waits until the editor saves the corrected text.
Outcome runOnce(LiveDesktop& desk, Editor& editor, int number, const Trigger& trigger = &LiveDesktop::triggerHotKey,
                Latencies* latencies = nullptr);

/// One run with a slow service, with pictures before it, while it waits for the answer, and after it.
Outcome takePictures(const Programs& programs, const std::string& editorKind, const std::filesystem::path& directory);

/// What the hosted service answers to a chat.
Answer completion(const std::string& content);

/// A failure, with what the program said if it has ended.
Outcome failed(LiveDesktop& desk, const std::string& reason);
/// The names of the marks so far, for a failure.
std::string marksOf(const Trace& trace);

/// Its run may also fail by an exception.
struct Case {
  std::string_view name;
  std::string_view about;
  Outcome (*run)(const Programs&, const std::string& editorKind);
};

/// The review panel and the command menu, from their keys to the changed text.
Outcome reviewRuns(const Programs& programs, const std::string& editorKind);
Outcome reviewEndings(const Programs& programs, const std::string& editorKind);
Outcome commandMenu(const Programs& programs, const std::string& editorKind);

/// What else happens on real desktops besides the ordinary run.
const std::vector<Case>& cases();

}  // namespace quillmark::demo
