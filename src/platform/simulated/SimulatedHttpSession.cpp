#include "platform/simulated/SimulatedHttpSession.h"

namespace quillmark {

std::string SimulatedHttpSession::Exchange::header(const std::string& name) const {
  for (const auto& header : request.headers) {
    if (header.name == name) {
      return header.value;
    }
  }
  return "(absent)";
}

void SimulatedHttpSession::Exchange::answer(int status, std::optional<std::string> mimeType,
                                            const std::string& body) const {
  const bool goesOn = head(status, std::move(mimeType));
  if (goesOn && !body.empty()) {
    bytes(body);
  }
  end();
}

void SimulatedHttpSession::start(HttpRequest request, HttpHandlers handlers) {
  exchanges.push_back({std::move(request), std::move(handlers)});
  if (onRequest) {
    onRequest(exchanges.back());
  }
}

}  // namespace quillmark
