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

  /// The port in QUILLMARK_LOCAL_PORT, or the default one.
  static int localPortOfEnvironment();

  explicit AppConfig(UserDefaults& defaults, int localPort = defaultLocalPort);

  Setting<bool> useLocalApi;
  Setting<std::string> serviceToken;  ///< identifies this program to the hosted service

  /// Without a trailing slash; reads `useLocalApi` at each call.
  std::string serviceRoot() const;
  /// The page where a user gets the program.
  std::string downloadLink() const { return serviceRoot() + "/download"; }

 private:
  int localPort_;
};

}  // namespace quillmark
