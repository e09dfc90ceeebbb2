#include "providers/ModelListing.h"

#include "base/Log.h"

namespace quillmark {

void requestModels(HttpTransport& transport, TransportRequest request, ProviderType type, const ModelListing& listing,
                   std::function<void(std::optional<std::vector<ProviderModel>>)> completion) {
  using Entries = std::vector<GenericModelData>;
  transport.send<Entries>(std::move(request), "GenericModelResponse", listing.decode,
                          [type, logsCount = listing.logsCount, failureLabel = listing.failureLabel,
                           completion = std::move(completion)](const Expected<Entries, TransportError>& entries) {
                            if (!entries) {
                              log(failureLabel + entries.error().description);
                              completion(std::nullopt);
                              return;
                            }
                            std::vector<ProviderModel> models;
                            for (const auto& entry : *entries) {
                              models.push_back(entry.toModel(type));
                            }
                            if (logsCount) {
                              log("models: " + std::to_string(models.size()));
                            }
                            completion(std::move(models));
                          });
}

}  // namespace quillmark
