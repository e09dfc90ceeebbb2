#include "execution/SelectionCapture.h"

#include "base/Trace.h"

namespace quillmark {

void SelectionCapture::getSelectedText(bool shouldCopy, std::function<void(const std::string&)> completion) {
  if (shouldCopy) {
    // Emptied first, so that a copy key that does nothing can't pass an old copy off as the selection.
    pasteboard_.clearContents();
    keyboard_.pressCopy();
    trace::mark("copy key posted");
  }
  queue_.after(reactionTime, lifetime_.guard([this, completion = std::move(completion)] {
    pasteboard_.readString(lifetime_.guard([completion](const std::optional<std::string>& text) {
      trace::mark("pasteboard read");
      completion(text.value_or(""));
    }));
  }));
}

void SelectionCapture::pasteText(std::string text) {
  pasteboard_.clearContents();
  pasteboard_.setString(std::move(text));
  trace::mark("pasteboard written");
  queue_.after(reactionTime, lifetime_.guard([this] {
    keyboard_.pressPaste();
    trace::mark("paste key posted");
  }));
}

}  // namespace quillmark
