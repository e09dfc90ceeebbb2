#pragma once

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "support/EventLoop.h"

namespace quillmark {

/// Another application at the CLIPBOARD selection, run by the test's own loop.
class ClipboardClient {
 public:
  ClipboardClient(const std::string& display, EventLoop& loop);
  ClipboardClient(const ClipboardClient&) = delete;
  ClipboardClient& operator=(const ClipboardClient&) = delete;
  ~ClipboardClient();

  /// Takes the clipboard and offers these bytes by target. With a piece size it hands them out in pieces.
  void own(std::map<std::string, std::string> offers, std::size_t pieceSize = 0);
  /// From now on requests are taken and never answered.
  void hang() { hanging_ = true; }
  /// After one piece no further one comes.
  void stallAfterOnePiece() { stalling_ = true; }
  bool owns() const;

  struct Answer {
    bool done = false;
    bool refused = false;
    bool inPieces = false;
    std::string type;
    std::string bytes;
    std::vector<std::string> atoms() const;  ///< names, of an answer that is a list of them

    const ClipboardClient* client = nullptr;
  };
  /// Asks the owner, whoever that is; look at the answer when it is done. It stays where it is.
  const Answer& request(const std::string& target);
  /// Asks for several targets in one request; the answers by target, without those refused.
  const std::map<std::string, std::string>& requestMultiple(const std::vector<std::string>& targets);
  bool multipleDone() const { return multipleDone_; }

 private:
  struct Sending {
    xcb_window_t window;
    xcb_atom_t property;
    xcb_atom_t type;
    std::string rest;
    int pieces = 0;
  };
  struct Asking {
    xcb_atom_t property;
    Answer answer;
  };

  void drain();
  void serve(const xcb_selection_request_event_t& request);
  void propertyChanged(const xcb_property_notify_event_t& notify);
  void received(const xcb_selection_notify_event_t& notify);
  xcb_atom_t atom(std::string_view name) const;
  std::string atomName(xcb_atom_t atom) const;
  std::string take(xcb_atom_t property, xcb_atom_t* type);

  xcb_connection_t* connection_;
  xcb_window_t window_;
  std::map<std::string, std::string> offers_;
  std::size_t pieceSize_ = 0;
  bool hanging_ = false;
  bool stalling_ = false;
  std::deque<Sending> sending_;
  std::deque<Asking> asking_;
  std::map<std::string, std::string> multiple_;
  bool multipleDone_ = false;
};

}  // namespace quillmark
