#pragma once

#include <string_view>

#include "support/Trace.h"

namespace quillmark::bench {

/// A bare listener on the loopback interface: no server thread comes between the wire and the clock. Throws
/// std::runtime_error when there is no socket, or when no request arrives.
class LoopbackListener {
 public:
  LoopbackListener();
  LoopbackListener(const LoopbackListener&) = delete;
  LoopbackListener& operator=(const LoopbackListener&) = delete;
  ~LoopbackListener();

  int port() const { return port_; }

  /// One connection, from its request on; the destructor closes it.
  class Connection {
   public:
    explicit Connection(const LoopbackListener& listener);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    /// Waits until the peer has closed the connection, too.
    ~Connection();

    /// When the first bytes of the request arrived.
    Moment requestedAt() const { return requestedAt_; }
    void send(std::string_view bytes) const;

   private:
    int socket_ = -1;
    Moment requestedAt_{};
  };

 private:
  int socket_ = -1;
  int port_ = 0;
};

}  // namespace quillmark::bench
