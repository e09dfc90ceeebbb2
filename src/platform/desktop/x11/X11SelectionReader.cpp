#include "platform/desktop/x11/X11SelectionReader.h"

#include <algorithm>

#include "base/Log.h"
#include "base/Text.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 2s;
constexpr std::size_t longestText = std::size_t{256} << 20;

std::string fromLatin1(std::string_view bytes) {
  std::string result;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x80) {
      result += byte;
    } else {
      result += static_cast<char>(0xC0 | code >> 6);
      result += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return result;
}

}  // namespace

X11SelectionReader::X11SelectionReader(X11Connection& connection, MainQueue& queue)
    : connection_(connection), queue_(queue) {
  answers_ = connection_.onEvent(XCB_SELECTION_NOTIFY, [this](const xcb_generic_event_t& event) {
    const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    if (notify.requestor == connection_.window() && notify.selection == connection_.atoms().clipboard) {
      answered(notify);
    }
  });
  propertyEvents_ = connection_.onEvent(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window == connection_.window() && notify.state == XCB_PROPERTY_NEW_VALUE) {
      pieceArrived(notify.atom);
    }
  });
}

std::vector<xcb_atom_t> X11SelectionReader::targets() const {
  const auto& atoms = connection_.atoms();
  return {atoms.utf8String, atoms.textPlainUtf8, XCB_ATOM_STRING};
}

xcb_atom_t X11SelectionReader::freeProperty() {
  if (freeProperties_.empty()) {
    return connection_.internAtom("_QUILLMARK_READ_" + std::to_string(propertiesMade_++));
  }
  const auto property = freeProperties_.back();
  freeProperties_.pop_back();
  return property;
}

void X11SelectionReader::read(Pasteboard::Reader reader) {
  const auto property = freeProperty();
  auto& started = reads_[property];
  started.reader = std::move(reader);
  started.time = connection_.serverTime();
  ask(property);
}

void X11SelectionReader::ask(xcb_atom_t property) {
  const auto& read = reads_[property];
  xcb_convert_selection(connection_.xcb(), connection_.window(), connection_.atoms().clipboard, targets()[read.attempt],
                        property, read.time);
  xcb_flush(connection_.xcb());
  expectProgress(property);
}

void X11SelectionReader::answered(const xcb_selection_notify_event_t& notify) {
  if (notify.property == XCB_ATOM_NONE) {
    refused(notify);
    return;
  }
  auto answer = connection_.property(connection_.window(), notify.property, true);
  const auto found = reads_.find(notify.property);
  if (found == reads_.end()) {
    return;  // too late; the property is gone now
  }
  auto& read = found->second;
  if (!answer) {
    tryNextTarget(notify.property);
  } else if (answer->type == connection_.atoms().incr) {
    read.inPieces = true;  // the first piece comes now that the property is deleted
    expectProgress(notify.property);
  } else {
    read.bytes = answer->format == 8 ? std::move(answer->bytes) : std::string();
    finishWith(notify.property, answer->type);
  }
}

// A refusal does not name the property. All reads with the same target and time are refused alike.
void X11SelectionReader::refused(const xcb_selection_notify_event_t& notify) {
  const auto found = std::ranges::find_if(reads_, [&](const auto& entry) {
    const auto& read = entry.second;
    return !read.inPieces && targets()[read.attempt] == notify.target &&
           (notify.time == read.time || notify.time == XCB_CURRENT_TIME);
  });
  if (found != reads_.end()) {
    tryNextTarget(found->first);
  }
}

void X11SelectionReader::pieceArrived(xcb_atom_t property) {
  const auto found = reads_.find(property);
  if (found == reads_.end() || !found->second.inPieces) {
    return;
  }
  auto& read = found->second;
  const auto piece = connection_.property(connection_.window(), property, true);
  if (!piece) {
    return;
  }
  if (piece->bytes.empty()) {
    finishWith(property, piece->type);
    return;
  }
  read.bytes += piece->bytes;
  if (read.bytes.size() > longestText) {
    log("Pasteboard: the text is too long");
    finish(property, std::nullopt);
    return;
  }
  expectProgress(property);
}

void X11SelectionReader::tryNextTarget(xcb_atom_t property) {
  auto& read = reads_[property];
  if (++read.attempt < targets().size()) {
    ask(property);
    return;
  }
  freeProperties_.push_back(property);
  finish(property, std::nullopt);
}

void X11SelectionReader::finishWith(xcb_atom_t property, xcb_atom_t type) {
  const auto& atoms = connection_.atoms();
  std::string bytes = std::move(reads_[property].bytes);
  if (bytes.ends_with('\0')) {
    bytes.pop_back();  // some owners include the terminator of a C string
  }
  freeProperties_.push_back(property);
  if (bytes.empty()) {
    finish(property, std::nullopt);
  } else if (type == XCB_ATOM_STRING) {
    finish(property, fromLatin1(bytes));
  } else if (type == atoms.utf8String || type == atoms.textPlainUtf8) {
    finish(property, text::decodeUtf8(bytes));
  } else {
    log("Pasteboard: its owner gave something else than text");
    finish(property, std::nullopt);
  }
}

void X11SelectionReader::expectProgress(xcb_atom_t property) {
  auto& deadline = reads_[property].deadline;
  deadline.cancel();
  deadline = queue_.after(patience, lifetime_.guard([this, property] {
    log("Pasteboard: its owner does not answer");
    finish(property, std::nullopt);
  }));
}

void X11SelectionReader::finish(xcb_atom_t property, std::optional<std::string> text) {
  auto read = reads_.extract(property);
  read.mapped().deadline.cancel();
  read.mapped().reader(std::move(text));
}

}  // namespace quillmark
