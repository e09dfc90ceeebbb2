#include "support/ClipboardClient.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "support/XSession.h"

namespace quillmark {

ClipboardClient::ClipboardClient(const std::string& display, EventLoop& loop)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) {
    throw std::runtime_error("clipboard client: no connection");
  }
  window_ = xcb_generate_id(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_, 0, window_, xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root, 0, 0, 1,
                    1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  xcb_flush(connection_);
  loop.watch(xcb_get_file_descriptor(connection_), [this] { drain(); });
}

ClipboardClient::~ClipboardClient() { xcb_disconnect(connection_); }

xcb_atom_t ClipboardClient::atom(std::string_view name) const {
  const auto reply = owned(xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  return reply ? reply->atom : xcb_atom_t{};
}

std::string ClipboardClient::atomName(xcb_atom_t value) const {
  const auto reply = owned(xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, value), nullptr));
  return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                             static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
               : std::string();
}

std::vector<std::string> ClipboardClient::Answer::atoms() const {
  std::vector<std::string> names;
  for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
    xcb_atom_t value = 0;
    std::memcpy(&value, bytes.data() + at, 4);
    names.push_back(client->atomName(value));
  }
  return names;
}

void ClipboardClient::own(std::map<std::string, std::string> offers, std::size_t pieceSize) {
  offers_ = std::move(offers);
  pieceSize_ = pieceSize;
  xcb_set_selection_owner(connection_, window_, atom("CLIPBOARD"), XCB_CURRENT_TIME);
  if (!owns()) {
    throw std::runtime_error("clipboard client: not the owner");
  }
}

bool ClipboardClient::owns() const {
  const auto reply = owned(
      xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, atom("CLIPBOARD")), nullptr));
  return reply && reply->owner == window_;
}

const ClipboardClient::Answer& ClipboardClient::request(const std::string& target) {
  const auto property = atom("ANSWER_" + std::to_string(asking_.size()));
  asking_.push_back({property, {}});
  asking_.back().answer.client = this;
  xcb_convert_selection(connection_, window_, atom("CLIPBOARD"), atom(target), property, XCB_CURRENT_TIME);
  xcb_flush(connection_);
  return asking_.back().answer;
}

const std::map<std::string, std::string>& ClipboardClient::requestMultiple(const std::vector<std::string>& targets) {
  std::vector<xcb_atom_t> pairs;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    pairs.push_back(atom(targets[i]));
    pairs.push_back(atom("PART_" + std::to_string(i)));
  }
  const auto property = atom("PARTS");
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, atom("ATOM_PAIR"), 32,
                      static_cast<std::uint32_t>(pairs.size()), pairs.data());
  xcb_convert_selection(connection_, window_, atom("CLIPBOARD"), atom("MULTIPLE"), property, XCB_CURRENT_TIME);
  xcb_flush(connection_);
  return multiple_;
}

void ClipboardClient::drain() {
  while (const auto event = owned(xcb_poll_for_event(connection_))) {
    switch (event->response_type & 0x7f) {
      case XCB_SELECTION_REQUEST:
        if (!hanging_) {
          serve(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
        }
        break;
      case XCB_SELECTION_NOTIFY:
        received(reinterpret_cast<const xcb_selection_notify_event_t&>(*event));
        break;
      case XCB_PROPERTY_NOTIFY:
        propertyChanged(reinterpret_cast<const xcb_property_notify_event_t&>(*event));
        break;
      default:
        break;
    }
  }
  xcb_flush(connection_);
}

void ClipboardClient::serve(const xcb_selection_request_event_t& request) {
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = request.time;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  const auto offer = offers_.find(atomName(request.target));
  if (offer != offers_.end()) {
    notify.property = request.property;
    if (pieceSize_ == 0) {
      xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target, 8,
                          static_cast<std::uint32_t>(offer->second.size()), offer->second.data());
    } else {
      const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
      xcb_change_window_attributes(connection_, request.requestor, XCB_CW_EVENT_MASK, &events);
      const std::uint32_t atLeast = 1;
      xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property, atom("INCR"), 32, 1,
                          &atLeast);
      sending_.push_back({request.requestor, request.property, request.target, offer->second});
    }
  }
  xcb_send_event(connection_, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
}

void ClipboardClient::propertyChanged(const xcb_property_notify_event_t& notify) {
  if (notify.state == XCB_PROPERTY_DELETE) {
    const auto sending = std::ranges::find_if(sending_, [&](const Sending& candidate) {
      return candidate.window == notify.window && candidate.property == notify.atom;
    });
    if (sending == sending_.end() || (stalling_ && sending->pieces > 0)) {
      return;
    }
    const auto piece = sending->rest.substr(0, pieceSize_);
    sending->rest.erase(0, piece.size());
    ++sending->pieces;
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, sending->window, sending->property, sending->type, 8,
                        static_cast<std::uint32_t>(piece.size()), piece.data());
    if (piece.empty()) {
      sending_.erase(sending);
    }
    return;
  }
  for (auto& asking : asking_) {
    if (asking.property == notify.atom && asking.answer.inPieces && !asking.answer.done) {
      xcb_atom_t type = 0;
      const auto piece = take(asking.property, &type);
      asking.answer.type = atomName(type);
      asking.answer.bytes += piece;
      asking.answer.done = piece.empty();
    }
  }
}

void ClipboardClient::received(const xcb_selection_notify_event_t& notify) {
  if (notify.target == atom("MULTIPLE")) {
    xcb_atom_t type = 0;
    const auto pairs = notify.property == 0 ? std::string() : take(notify.property, &type);
    for (std::size_t at = 0; at + 8 <= pairs.size(); at += 8) {
      xcb_atom_t pair[2];
      std::memcpy(pair, pairs.data() + at, 8);
      if (pair[1] != 0) {
        multiple_[atomName(pair[0])] = take(pair[1], &type);
      }
    }
    multipleDone_ = true;
    return;
  }
  const auto unanswered = std::ranges::find_if(asking_, [&](const Asking& asking) {
    return !asking.answer.done && !asking.answer.inPieces &&
           (notify.property == 0 || asking.property == notify.property);
  });
  if (unanswered == asking_.end()) {
    return;
  }
  auto& answer = unanswered->answer;
  if (notify.property == 0) {
    answer.refused = answer.done = true;
    return;
  }
  xcb_atom_t type = 0;
  answer.bytes = take(notify.property, &type);
  answer.type = atomName(type);
  answer.inPieces = answer.type == "INCR";
  if (answer.inPieces) {
    answer.bytes.clear();
  } else {
    answer.done = true;
  }
}

std::string ClipboardClient::take(xcb_atom_t property, xcb_atom_t* type) {
  const auto reply = owned(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 1, window_, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 24),
      nullptr));
  if (!reply) {
    return {};
  }
  *type = reply->type;
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

}  // namespace quillmark
