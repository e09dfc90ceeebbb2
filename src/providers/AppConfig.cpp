#include "providers/AppConfig.h"

namespace quillmark {

const char* const AppConfig::publicRoot = QUILLMARK_SERVICE_ROOT;

AppConfig::AppConfig(UserDefaults& defaults, int localPort)
    : useLocalApi(defaults, "useLocalApi", false), localPort_(localPort) {}

std::string AppConfig::serviceRoot() const {
  return useLocalApi.get() ? "http://127.0.0.1:" + std::to_string(localPort_) : publicRoot;
}

}  // namespace quillmark
