#pragma once

#include <functional>
#include <optional>
#include <string>

#include "providers/AppConfig.h"
#include "providers/HttpTransport.h"

namespace quillmark {

/// Calls to the hosted service besides those of its provider. Each carries the service's credential and the version of
/// this program. Completions run on the main thread.
class APIClient {
 public:
  APIClient(HttpTransport& transport, const AppConfig& config, const Bundle& bundle)
      : transport_(transport), config_(config), version_(bundle.shortVersion.value_or("")) {}

  /// Asks `<root>/api/<path>`. `typeName` and `decode` are those of HttpTransport::send().
  template <class T>
  void get(const std::string& path, const std::string& typeName, std::function<T(const Json&)> decode,
           std::function<void(Expected<T, TransportError>)> completion) const {
    transport_.send<T>(request("GET", path, std::nullopt), typeName, std::move(decode), std::move(completion));
  }

  template <class T>
  void post(const std::string& path, Json body, const std::string& typeName, std::function<T(const Json&)> decode,
            std::function<void(Expected<T, TransportError>)> completion) const {
    transport_.send<T>(request("POST", path, std::move(body)), typeName, std::move(decode), std::move(completion));
  }

 private:
  TransportRequest request(const char* method, const std::string& path, std::optional<Json> body) const;

  HttpTransport& transport_;
  const AppConfig& config_;
  std::string version_;
};

}  // namespace quillmark
