#pragma once

#include <string>

#include "platform/UserDefaults.h"

namespace quillmark {

/// Where the hosted service is: its public root, or a server on this machine.
class AppConfig {
 public:
  /// The public root, a build setting.
  static const char* const publicRoot;
  static constexpr int defaultLocalPort = 3030;

  /// The port that QUILLMARK_LOCAL_PORT names, or the usual one.
  static int localPortOfEnvironment();

  explicit AppConfig(UserDefaults& defaults, int localPort = defaultLocalPort);

  Setting<bool> useLocalApi;
  Setting<std::string> serviceToken;  ///< what the hosted service knows this program by

  /// Without a trailing slash; follows `useLocalApi` at each call.
  std::string serviceRoot() const;
  /// The page where a user gets the program.
  std::string downloadLink() const { return serviceRoot() + "/download"; }

 private:
  int localPort_;
};

}  // namespace quillmark
