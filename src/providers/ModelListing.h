#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "providers/ChatCompletions.h"
#include "providers/HttpTransport.h"

namespace quillmark {

/// What differs between the listings of backends.
struct ModelListing {
  std::function<std::vector<GenericModelData>(const Json&)> decode = genericModelResponseFromJson;
  bool logsCount = true;
  const char* failureLabel = "Failure ";  ///< before the error in the log
};

/// Requests a backend's models. The completion runs on the main thread; absent after a failure, which is logged.
void requestModels(HttpTransport& transport, TransportRequest request, ProviderType type, const ModelListing& listing,
                   std::function<void(std::optional<std::vector<ProviderModel>>)> completion);

}  // namespace quillmark
