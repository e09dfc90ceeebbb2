#include "providers/APIClient.h"

namespace quillmark {

TransportRequest APIClient::request(const char* method, const std::string& path, std::optional<Json> body) const {
  return {method,
          config_.serviceRoot() + "/api/" + path,
          {{"Authorization", "Bearer " + config_.serviceToken.get()},
           {"Accept", "application/json"},
           {"X-AppVersion", version_}},
          std::move(body)};
}

}  // namespace quillmark
