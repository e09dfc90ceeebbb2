#pragma once

#include <memory>
#include <string>

#include "support/Process.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {

/// A port of the loopback interface that speaks TLS and hands what it hears to another port, in the pieces in which it
/// comes. Its certificate is for 127.0.0.1, made for this object, and its own authority.
class TlsFront {
 public:
  explicit TlsFront(int plainPort);

  int port() const { return port_; }
  /// The file with the authority that a client must trust.
  std::string authority() const { return files_ / "certificate.pem"; }

 private:
  TemporaryDirectory files_;
  std::unique_ptr<Process> process_;
  int port_ = 0;
};

}  // namespace quillmark
