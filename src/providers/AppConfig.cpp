#include "providers/AppConfig.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace quillmark {

const char* const AppConfig::publicRoot = QUILLMARK_SERVICE_ROOT;

int AppConfig::localPortOfEnvironment() {
  int port = defaultLocalPort;
  if (const char* variable = std::getenv("QUILLMARK_LOCAL_PORT")) {
    const std::string_view text = variable;
    std::from_chars(text.data(), text.data() + text.size(), port);
  }
  return port;
}

AppConfig::AppConfig(UserDefaults& defaults, int localPort)
    : useLocalApi(defaults, keys::useLocalApi), serviceToken(defaults, keys::serviceToken), localPort_(localPort) {}

std::string AppConfig::serviceRoot() const {
  return useLocalApi.get() ? "http://127.0.0.1:" + std::to_string(localPort_) : publicRoot;
}

}  // namespace quillmark
