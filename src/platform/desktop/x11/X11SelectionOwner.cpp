#include "platform/desktop/x11/X11SelectionOwner.h"

#include <algorithm>
#include <cstring>

#include "base/Log.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t largestPiece = std::size_t{256} * 1024;
constexpr auto patience = 10s;

/// Nothing when a character lies outside Latin-1, the encoding of STRING.
std::optional<std::string> latin1(const std::string& utf8) {
  std::string result;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {
      result += utf8[i];
    } else if ((byte == 0xC2 || byte == 0xC3) && i + 1 < utf8.size()) {
      result += static_cast<char>((byte & 0x03) << 6 | (utf8[++i] & 0x3F));
    } else {
      return std::nullopt;
    }
  }
  return result;
}

}  // namespace

X11SelectionOwner::X11SelectionOwner(X11Connection& connection, MainQueue& queue)
    : connection_(connection), queue_(queue), pieceSize_(largestPiece) {
  if (!connection_.alive()) {
    return;
  }
  const std::size_t longestRequest = std::size_t{xcb_get_maximum_request_length(connection_.xcb())} * 4;
  pieceSize_ = std::min(largestPiece, longestRequest - 64);  // minus the request's own fields

  requests_ = connection_.onEvent(XCB_SELECTION_REQUEST, [this](const xcb_generic_event_t& event) {
    requested(reinterpret_cast<const xcb_selection_request_event_t&>(event));
  });
  losses_ = connection_.onEvent(XCB_SELECTION_CLEAR, [this](const xcb_generic_event_t& event) {
    const auto& clear = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
    if (clear.selection == connection_.atoms().clipboard && !X11Connection::isBefore(event, takenBy_)) {
      text_.reset();
      latin1_.reset();
    }
  });
  propertyEvents_ = connection_.onEvent(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.state == XCB_PROPERTY_DELETE) {
      sendNextPiece({notify.window, notify.atom});
    }
  });
  windowEvents_ = connection_.onEvent(XCB_DESTROY_NOTIFY, [this](const xcb_generic_event_t& event) {
    endTransfers(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
  });
}

bool X11SelectionOwner::owns() const {
  const auto reply = x11Owned(xcb_get_selection_owner_reply(
      connection_.xcb(), xcb_get_selection_owner(connection_.xcb(), connection_.atoms().clipboard), nullptr));
  return reply && reply->owner == connection_.window();
}

bool X11SelectionOwner::take(std::optional<std::string> text) {
  if (!connection_.alive()) {
    return false;
  }
  text_ = text ? std::make_shared<const std::string>(std::move(*text)) : nullptr;
  auto narrow = text_ ? latin1(*text_) : std::nullopt;
  latin1_ = narrow ? std::make_shared<const std::string>(std::move(*narrow)) : nullptr;
  // The server refuses a time before the current owner's. Another client can take the selection between our reading the
  // clock and our request.
  for (int attempt = 0; attempt < 3; ++attempt) {
    since_ = connection_.serverTime();
    takenBy_ = xcb_set_selection_owner(connection_.xcb(), connection_.window(), connection_.atoms().clipboard, since_)
                   .sequence;
    if (owns()) {
      return true;
    }
  }
  return false;
}

std::optional<std::string> X11SelectionOwner::text() const { return text_ ? std::optional(*text_) : std::nullopt; }

void X11SelectionOwner::requested(const xcb_selection_request_event_t& request) {
  const auto& atoms = connection_.atoms();
  // Obsolete clients name no property and mean one with the name of the target (ICCCM 2.2).
  const xcb_atom_t property = request.property != XCB_ATOM_NONE ? request.property : request.target;
  bool answered = false;
  if (request.selection == atoms.clipboard && request.owner == connection_.window() &&
      request.requestor != connection_.window()) {
    answered = request.target == atoms.multiple ? convertMultiple(request.requestor, request.property)
                                                : convert(request.requestor, request.target, property);
  }
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = request.time;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  notify.property = answered ? property : xcb_atom_t{XCB_ATOM_NONE};
  xcb_send_event(connection_.xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&notify));
  xcb_flush(connection_.xcb());
}

std::vector<xcb_atom_t> X11SelectionOwner::targets() const {
  const auto& atoms = connection_.atoms();
  std::vector<xcb_atom_t> result{atoms.targets, atoms.timestamp, atoms.multiple};
  if (!text_) {
    result.insert(result.end(), {atoms.quillmarkCleared, atoms.passwordManagerHint});
    return result;
  }
  result.insert(result.end(), {atoms.utf8String, atoms.textPlainUtf8, atoms.textPlain, atoms.text});
  if (latin1_) {
    result.push_back(XCB_ATOM_STRING);
  }
  return result;
}

bool X11SelectionOwner::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
  const auto& atoms = connection_.atoms();
  auto* const xcb = connection_.xcb();
  if (target == atoms.targets) {
    const auto list = targets();
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(list.size()), list.data());
    return true;
  }
  if (target == atoms.timestamp) {
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32, 1, &since_);
    return true;
  }
  const auto offered = targets();
  if (target == atoms.multiple || std::ranges::find(offered, target) == offered.end()) {
    return false;
  }
  if (target == atoms.quillmarkCleared) {
    write(requestor, property, target, std::make_shared<const std::string>());
  } else if (target == atoms.passwordManagerHint) {
    // The clipboard managers of the large desktops read this as "do not keep this".
    write(requestor, property, target, std::make_shared<const std::string>("secret"));
  } else if (target == XCB_ATOM_STRING) {
    write(requestor, property, target, latin1_);
  } else {
    write(requestor, property, target == atoms.text ? atoms.utf8String : target, text_);
  }
  return true;
}

bool X11SelectionOwner::convertMultiple(xcb_window_t requestor, xcb_atom_t property) {
  const auto list = property == XCB_ATOM_NONE ? std::nullopt : connection_.property(requestor, property);
  if (!list || list->format != 32) {
    return false;
  }
  auto pairs = list->numbers();  // target, property, target, property ...
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    if (pairs[i + 1] != XCB_ATOM_NONE && !convert(requestor, pairs[i], pairs[i + 1])) {
      pairs[i + 1] = XCB_ATOM_NONE;
    }
  }
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, connection_.atoms().atomPair, 32,
                      static_cast<std::uint32_t>(pairs.size()), pairs.data());
  return true;
}

// --- large texts

void X11SelectionOwner::write(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, Bytes bytes) {
  auto* const xcb = connection_.xcb();
  if (bytes->size() <= pieceSize_) {
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
                        static_cast<std::uint32_t>(bytes->size()), bytes->data());
    return;
  }
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(xcb, requestor, XCB_CW_EVENT_MASK, &events);
  const auto size = static_cast<std::uint32_t>(bytes->size());
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, connection_.atoms().incr, 32, 1, &size);
  const TransferKey key{requestor, property};
  auto& transfer = transfers_[key];
  transfer.deadline.cancel();
  transfer = {type, std::move(bytes), 0, {}};
  expectProgress(key);
}

void X11SelectionOwner::sendNextPiece(const TransferKey& key) {
  const auto found = transfers_.find(key);
  if (found == transfers_.end()) {
    return;
  }
  auto& transfer = found->second;
  const auto size = std::min(pieceSize_, transfer.bytes->size() - transfer.sent);
  // An empty piece is the end.
  xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, key.first, key.second, transfer.type, 8,
                      static_cast<std::uint32_t>(size), transfer.bytes->data() + transfer.sent);
  transfer.sent += size;
  if (size == 0) {
    endTransfer(key);
  } else {
    expectProgress(key);
  }
}

void X11SelectionOwner::expectProgress(const TransferKey& key) {
  auto& deadline = transfers_[key].deadline;
  deadline.cancel();
  deadline = queue_.after(patience, lifetime_.guard([this, key] {
    log("Pasteboard: an application stopped fetching the text");
    endTransfer(key);
  }));
}

void X11SelectionOwner::endTransfers(xcb_window_t requestor) {
  for (auto it = transfers_.begin(); it != transfers_.end();) {
    if (it->first.first == requestor) {
      it->second.deadline.cancel();
      it = transfers_.erase(it);
    } else {
      ++it;
    }
  }
}

void X11SelectionOwner::endTransfer(const TransferKey& key) {
  const auto found = transfers_.find(key);
  if (found == transfers_.end()) {
    return;
  }
  found->second.deadline.cancel();
  transfers_.erase(found);
  const bool last = std::ranges::none_of(transfers_, [&](const auto& entry) { return entry.first.first == key.first; });
  if (last) {
    const std::uint32_t nothing = 0;
    xcb_change_window_attributes(connection_.xcb(), key.first, XCB_CW_EVENT_MASK, &nothing);
  }
}

}  // namespace quillmark
