#pragma once

#include <functional>
#include <string>

#include "base/Expected.h"
#include "platform/HttpSession.h"

namespace quillmark {

struct HttpResponse {
  HttpResponseHead head;
  std::string body;
};

/// Sends a request and collects its response. The completion runs once, on the session's thread.
void fetch(HttpSession& session, HttpRequest request,
           std::function<void(Expected<HttpResponse, HttpFailure>)> completion);

}  // namespace quillmark
