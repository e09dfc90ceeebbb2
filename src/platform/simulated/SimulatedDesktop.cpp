#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>

namespace quillmark {

void SimulatedApplication::activate() {
  if (!hasQuit) {
    desktop_.workspace.bringToFront(shared_from_this());
  }
}

void SimulatedApplication::copy() {
  desktop_.queue.after(latency, [self = shared_from_this(), this] {
    if (hasQuit || selection.length == 0) {
      return;
    }
    desktop_.pasteboard.put(name_, copiesPicture ? std::nullopt : std::optional(selectedText()));
    desktop_.pasteboard.ownerHangs = neverAnswers;
  });
}

void SimulatedApplication::paste() {
  desktop_.queue.after(latency, [self = shared_from_this(), this] {
    if (hasQuit || !desktop_.pasteboard.text) {
      return;
    }
    const std::string& pasted = *desktop_.pasteboard.text;
    text.replace(selection.start, selection.length, pasted);
    selection = {selection.start + pasted.size(), 0};
  });
}

void SimulatedPasteboard::readString(Reader reader) {
  if (ownerHangs) {
    queue_.after(readDeadline, [reader = std::move(reader)] { reader(std::nullopt); });
  } else {
    reader(text);
  }
}

std::optional<KeyboardEvent> SimulatedKeyInjector::createKeyboardEvent(KeyCode keyCode, bool keyDown) {
  if (refuses && refuses(keyCode, keyDown)) {
    return std::nullopt;
  }
  return KeyboardEvent{keyCode, keyDown, 0};
}

void SimulatedKeyInjector::post(std::span<const KeyboardEvent> events) {
  posted.insert(posted.end(), events.begin(), events.end());
  const auto front = desktop_.workspace.front;
  if (!front) {
    return;
  }
  for (const auto& event : events) {
    if (!event.keyDown || event.flags != commandFlag) {
      continue;
    }
    if (event.keyCode == KeyCode::c) {
      front->copy();
    } else if (event.keyCode == KeyCode::v) {
      front->paste();
    }
  }
}

void SimulatedHotKeys::press(const KeyCombination& combination) {
  for (const auto names = registered; const auto& [name, candidate] : names) {
    if (candidate == combination) {
      released.emit(name);
    }
  }
}

void SimulatedWorkspace::bringToFront(const std::shared_ptr<SimulatedApplication>& application) {
  if (front != application) {
    front = application;
    didActivateApplication.emit(front);
  }
}

void SimulatedAlerts::present(const Alert& alert, Closed closed) {
  open.push_back(alert);
  shown.push_back(alert);
  closed_.push_back(std::move(closed));
  desktop_.activateOwnWindow();
}

void SimulatedAlerts::close(std::size_t button) {
  open.pop_back();
  const auto closed = std::move(closed_.back());
  closed_.pop_back();
  closed(button);
}

std::optional<std::string> SimulatedLocale::displayName(std::string_view identifier, std::string_view inLocale) const {
  const auto found = names.find({std::string(identifier), std::string(inLocale)});
  return found == names.end() ? std::nullopt : std::optional(found->second);
}

SimulatedDesktop::SimulatedDesktop()
    : pasteboard(queue),
      keyInjector(*this),
      alerts(*this),
      own_(std::make_shared<SimulatedApplication>(*this, ownBundleId, "Quillmark")) {}

Platform SimulatedDesktop::platform() {
  return {{"quillmark-desktop", ownBundleId, "2.13.0", "7", {"de", "en", "es", "fr"}},
          operatingSystem,
          queue,
          background,
          defaults,
          locale,
          http,
          pasteboard,
          keyInjector,
          hotKeys,
          workspace,
          screens,
          alerts,
          permissions,
          loginItem};
}

std::shared_ptr<SimulatedApplication> SimulatedDesktop::openEditor(const std::string& name, const std::string& text) {
  auto editor = std::make_shared<SimulatedApplication>(*this, "org.example." + name, name);
  editor->text = text;
  editor->selectAll();
  workspace.bringToFront(editor);
  return editor;
}

void SimulatedDesktop::activateOwnWindow() { workspace.bringToFront(own_); }

}  // namespace quillmark
