#include "support/TlsFront.h"

#include <stdexcept>

namespace quillmark {

TlsFront::TlsFront(int plainPort) {
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

}  // namespace quillmark
