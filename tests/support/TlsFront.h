#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "support/Process.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {

/// A loopback port that speaks TLS and forwards to another port, piece by piece as received. Its certificate is for
/// 127.0.0.1, created for this object, and self-signed.
class TlsFront {
 public:
  explicit TlsFront(int plainPort) {
    const std::map<std::string, std::string> environment{{"PATH", "/usr/bin:/bin"}};
    const std::string key = files_ / "key.pem";
    Process maker(
        {"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days", "2",
         "-subj", "/CN=Quillmark test", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key, "-out", authority()},
        environment, {});
    const auto output = files_ / "output";
    if (maker.exitStatus() != 0) {
      throw std::runtime_error("openssl makes no certificate");
    }
    process_ = std::make_unique<Process>(
        std::vector<std::string>{"socat", "-d", "-d",
                                 "OPENSSL-LISTEN:0,bind=127.0.0.1,fork,verify=0,cert=" + authority() + ",key=" + key,
                                 "TCP:127.0.0.1:" + std::to_string(plainPort)},
        environment, Process::Streams{.output = output});
    port_ = std::stoi(waitForOutput(output, "listening on AF=2 127.0.0.1:").value_or("0"));
    if (port_ == 0) {
      throw std::runtime_error("socat does not listen: " + readFile(output));
    }
  }

  int port() const { return port_; }
  /// The certificate that a client must trust, as a file.
  std::string authority() const { return files_ / "certificate.pem"; }

 private:
  TemporaryDirectory files_;
  std::unique_ptr<Process> process_;
  int port_ = 0;
};

}  // namespace quillmark
