#pragma once

#include <functional>
#include <optional>
#include <string>

#include "providers/AppConfig.h"
#include "providers/HttpTransport.h"

namespace quillmark {

/// Calls to the hosted service apart from its provider's. Each carries the service's credential and this program's
/// version: the one given, or else the bundle's. Completions run on the main thread.
class APIClient {
 public:
  APIClient(HttpTransport& transport, const AppConfig& config, const Bundle& bundle)
      : transport_(transport), config_(config), version_(bundle.shortVersion.value_or("")) {}

  /// Requests `<root>/api/<path>`. `typeName` and `decode` are those of HttpTransport::send().
  template <class T>
  void get(const std::string& path, const std::string& typeName, std::function<T(const Json&)> decode,
           std::function<void(Expected<T, TransportError>)> completion,
           const std::optional<std::string>& version = std::nullopt) const {
    transport_.send<T>(request("GET", path, std::nullopt, version.value_or(version_)), typeName, std::move(decode),
                       std::move(completion));
  }

  template <class T>
  void post(const std::string& path, Json body, const std::string& typeName, std::function<T(const Json&)> decode,
            std::function<void(Expected<T, TransportError>)> completion) const {
    transport_.send<T>(request("POST", path, std::move(body), version_), typeName, std::move(decode),
                       std::move(completion));
  }

 private:
  TransportRequest request(const char* method, const std::string& path, std::optional<Json> body,
                           const std::string& version) const;

  HttpTransport& transport_;
  const AppConfig& config_;
  std::string version_;
};

}  // namespace quillmark
