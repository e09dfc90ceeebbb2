#include "providers/APIClient.h"

namespace quillmark {

TransportRequest APIClient::request(const char* method, const std::string& path, std::optional<Json> body,
                                    const std::string& version) const {
  return {method,
          config_.serviceRoot() + "/api/" + path,
          {{"Authorization", "Bearer " + config_.serviceToken.get()},
           {"Accept", "application/json"},
           {"X-AppVersion", version}},
          std::move(body)};
}

}  // namespace quillmark
