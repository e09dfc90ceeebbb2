#include "platform/HttpResponse.h"

#include <memory>
#include <utility>

namespace quillmark {

void fetch(HttpSession& session, HttpRequest request,
           std::function<void(Expected<HttpResponse, HttpFailure>)> completion) {
  const auto response = std::make_shared<HttpResponse>();
  HttpHandlers handlers;
  handlers.onHead = [response](const HttpResponseHead& head) {
    response->head = head;
    return true;
  };
  handlers.onBytes = [response](const std::string& bytes) { response->body += bytes; };
  handlers.onComplete = [response, completion = std::move(completion)](const std::optional<HttpFailure>& failure) {
    if (failure) {
      completion(unexpected(*failure));
    } else {
      completion(std::move(*response));
    }
  };
  session.start(std::move(request), std::move(handlers));
}

}  // namespace quillmark
