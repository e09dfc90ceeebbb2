#include "execution/SelectionCapture.h"

#include "base/Trace.h"

namespace quillmark {

void SelectionCapture::getSelectedText(bool shouldCopy, std::function<void(const std::string&)> completion) {
  if (shouldCopy) {
    // Emptied first, so that after a copy key without effect an old copy is not taken for the selection.
    pasteboard_.clearContents();
    keyboard_.pressCopy();
    trace::mark(trace::copyKeyPosted);
  }
  queue_.after(reactionTime, lifetime_.guard([this, completion = std::move(completion)] {
    pasteboard_.readString(lifetime_.guard([completion](const std::optional<std::string>& text) {
      trace::mark(trace::pasteboardRead);
      completion(text.value_or(""));
    }));
  }));
}

void SelectionCapture::apply(ActionBehavior behavior, const std::string& answer, const std::string& selection) {
  switch (behavior) {
    case ActionBehavior::replaceSelection:
      pasteText(answer);
      break;
    case ActionBehavior::insertAfterSelection:
      pasteText(selection + "\n\n" + answer);
      break;
    case ActionBehavior::insertBeforeSelection:
      pasteText(answer + "\n\n" + selection);
      break;
    case ActionBehavior::copyToClipboard:
      writePasteboard(answer);
      break;
    case ActionBehavior::showReview:
      break;
  }
}

void SelectionCapture::pasteText(std::string text) {
  writePasteboard(std::move(text));
  queue_.after(reactionTime, lifetime_.guard([this] {
    keyboard_.pressPaste();
    trace::mark(trace::pasteKeyPosted);
  }));
}

void SelectionCapture::writePasteboard(std::string text) {
  pasteboard_.clearContents();
  pasteboard_.setString(std::move(text));
  trace::mark(trace::pasteboardWritten);
}

}  // namespace quillmark
