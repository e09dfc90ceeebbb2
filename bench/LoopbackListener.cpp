#include "bench/LoopbackListener.h"

#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quillmark::bench {

LoopbackListener::LoopbackListener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(socket_, 8) != 0 ||
      getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no loopback socket");
  }
  // A program that never sends a request fails the bench instead of hanging it.
  const timeval patience{20, 0};
  setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  port_ = ntohs(address.sin_port);
}

LoopbackListener::~LoopbackListener() { ::close(socket_); }

LoopbackListener::Connection::Connection(const LoopbackListener& listener)
    : socket_(::accept4(listener.socket_, nullptr, nullptr, SOCK_CLOEXEC)) {
  const int atOnce = 1;
  setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
  char buffer[65536];
  if (socket_ < 0 || ::recv(socket_, buffer, sizeof buffer, 0) <= 0) {
    throw std::runtime_error("no request came");
  }
  requestedAt_ = now();
}

LoopbackListener::Connection::~Connection() {
  char buffer[65536];
  ::shutdown(socket_, SHUT_WR);
  while (::recv(socket_, buffer, sizeof buffer, 0) > 0) {
  }
  ::close(socket_);
}

void LoopbackListener::Connection::send(std::string_view bytes) const {
  ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace quillmark::bench
