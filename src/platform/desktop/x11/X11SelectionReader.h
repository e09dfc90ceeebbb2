#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// Reads the text of another client's CLIPBOARD selection without ever blocking. Any number of reads may be in
/// progress. Main thread only.
class X11SelectionReader {
 public:
  X11SelectionReader(X11Connection& connection, MainQueue& queue);

  void read(Pasteboard::Reader reader);

 private:
  struct Read {
    Pasteboard::Reader reader;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    std::size_t attempt = 0;  ///< which of the targets was asked for
    bool inPieces = false;
    std::string bytes;
    TimerHandle deadline;
  };

  std::vector<xcb_atom_t> targets() const;
  xcb_atom_t freeProperty();
  void ask(xcb_atom_t property);
  void answered(const xcb_selection_notify_event_t& notify);
  void refused(const xcb_selection_notify_event_t& notify);
  void pieceArrived(xcb_atom_t property);
  void tryNextTarget(xcb_atom_t property);
  void finishWith(xcb_atom_t property, xcb_atom_t type);
  void expectProgress(xcb_atom_t property);
  void finish(xcb_atom_t property, std::optional<std::string> text);

  X11Connection& connection_;
  MainQueue& queue_;
  std::map<xcb_atom_t, Read> reads_;  ///< by the property that will receive the answer
  /// A property whose answer never came is not used again: the answer may still come.
  std::vector<xcb_atom_t> freeProperties_;
  int propertiesMade_ = 0;
  Connection answers_, propertyEvents_;
  Lifetime lifetime_;
};

}  // namespace quillmark
