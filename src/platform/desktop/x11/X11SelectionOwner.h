#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// Owns the CLIPBOARD selection and answers other clients' requests (ICCCM 2), large texts piece by piece. Main thread
/// only.
class X11SelectionOwner {
 public:
  X11SelectionOwner(X11Connection& connection, MainQueue& queue);

  /// Becomes the owner, or renews the ownership, with a text or with nothing to paste. The server has acknowledged it
  /// on return; false when another client keeps the selection.
  bool take(std::optional<std::string> text);
  /// Whether the server still names us as the owner, in one round trip.
  bool owns() const;
  /// The text on offer; nothing when there is none.
  std::optional<std::string> text() const;

 private:
  using Bytes = std::shared_ptr<const std::string>;
  /// A text too long for one property is sent in pieces, each after the previous one has been fetched.
  struct Transfer {
    xcb_atom_t type = XCB_ATOM_NONE;
    Bytes bytes;
    std::size_t sent = 0;
    TimerHandle deadline;
  };
  using TransferKey = std::pair<xcb_window_t, xcb_atom_t>;  // requestor and property

  void requested(const xcb_selection_request_event_t& request);
  bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
  bool convertMultiple(xcb_window_t requestor, xcb_atom_t property);
  std::vector<xcb_atom_t> targets() const;
  void write(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, Bytes bytes);
  void sendNextPiece(const TransferKey& key);
  void expectProgress(const TransferKey& key);
  void endTransfers(xcb_window_t requestor);
  void endTransfer(const TransferKey& key);

  X11Connection& connection_;
  MainQueue& queue_;
  std::size_t pieceSize_;
  Bytes text_;
  Bytes latin1_;  ///< the text in the encoding of STRING, if that can hold it
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
  unsigned takenBy_ = 0;  ///< the request that made us the owner
  std::map<TransferKey, Transfer> transfers_;
  Connection requests_, losses_, propertyEvents_, windowEvents_;
  Lifetime lifetime_;
};

}  // namespace quillmark
