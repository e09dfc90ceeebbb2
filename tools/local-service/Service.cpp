#include "local-service/Service.h"

#include <ctime>
#include <stdexcept>

#include <httplib.h>

#include "local-service/PlainStream.h"
#include "local-service/Templates.h"

namespace quillmark::service {
namespace {

constexpr const char* loopback = "127.0.0.1";
constexpr std::size_t maximumRequestBytes = 32U << 20U;
constexpr std::size_t workers = 32;
constexpr std::size_t streamChunkBytes = 24;
constexpr const char* modelName = "local-text-work";

// The server library compresses what it knows as text, and its compressor holds back a stream until the end. It
// compares these types by exact spelling; to a client this one means the same (RFC 9110, 8.3.1).
constexpr const char* plainText = "Text/plain; charset=utf-8";
constexpr const char* json = "application/json; charset=utf-8";
constexpr const char* html = "Text/html; charset=utf-8";

struct CompletionRequest {
  std::string systemPrompt;
  std::string text;
  std::string model;
  bool stream = false;
};

CompletionRequest readCompletionRequest(const Json& body) {
  const JsonObject fields(body);
  CompletionRequest request;
  request.model = fields.valueOr<std::string>("model", "");
  request.stream = fields.valueOr<bool>("stream", false);
  const Json* messages = fields.find("messages");
  if (messages == nullptr) {
    throw DecodingError("messages", "is missing");
  }
  bool asked = false;
  decodeArray<bool>(
      *messages,
      [&](const Json& element, const std::string& path) {
        const JsonObject message(element, path);
        const auto role = message.required<std::string>("role");
        auto content = message.required<std::string>("content");
        if (role == "system") {
          request.systemPrompt = std::move(content);
        } else if (role == "user") {
          request.text = std::move(content);
          asked = true;
        }
        return true;
      },
      "messages");
  if (!asked) {
    throw DecodingError("messages", "holds no message of the role user");
  }
  return request;
}

std::string completion(const std::string& model, const std::string& content) {
  return toText(Json{{"id", "local-" + Uuid::random().toString()},
                     {"object", "chat.completion"},
                     {"created", std::time(nullptr)},
                     {"model", model},
                     {"choices", Json::array({{{"index", 0},
                                               {"message", {{"role", "assistant"}, {"content", content}}},
                                               {"finish_reason", "stop"}}})},
                     // No tokens were spent: nothing here is a language model.
                     {"usage", {{"prompt_tokens", 0}, {"completion_tokens", 0}, {"total_tokens", 0}}}});
}

std::string page(const std::string& title, const std::string& text) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>" + title +
         "</title>\n<body style=\"font: 16px/1.5 sans-serif; max-width: 36em; margin: 4em auto; padding: 0 "
         "1em\">\n<h1>" +
         title + "</h1>\n<p>" + text + "</p>\n</body>\n</html>\n";
}

void fail(httplib::Response& response, int status, const std::string& message) {
  response.status = status;
  response.set_content(errorBody(message), json);
}

}  // namespace

Service::Service(Settings settings) : settings_(std::move(settings)), server_(std::make_unique<httplib::Server>()) {
  if (settings_.upstream) {
    upstream_ = std::make_unique<Upstream>(*settings_.upstream);
  }
  server_->new_task_queue = [] { return new httplib::ThreadPool(workers); };
  server_->set_payload_max_length(maximumRequestBytes);
  server_->set_tcp_nodelay(true);
  // An idle connection occupies a worker, and stop() waits for it.
  server_->set_keep_alive_timeout(1);
  addRoutes();
  if (settings_.port == 0) {
    port_ = server_->bind_to_any_port(loopback);
  } else if (server_->bind_to_port(loopback, settings_.port)) {
    port_ = settings_.port;
  }
  if (port_ <= 0) {
    throw std::runtime_error("port " + std::to_string(settings_.port) +
                             " can't be had: is the service running already?");
  }
}

Service::~Service() { stop(); }

void Service::run() { server_->listen_after_bind(); }

void Service::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  stopped_.notify_all();
  if (upstream_) {
    upstream_->stop();
  }
  server_->stop();
}

bool Service::waitDelay() {
  std::unique_lock lock(mutex_);
  return !stopped_.wait_for(lock, settings_.delay, [this] { return stopping_; });
}

void Service::addRoutes() {
  server_->Post("/api/app/completion", [this](const auto& request, auto& response) { complete(request, response); });
  server_->Get("/api/app/models", [this](const auto&, auto& response) {
    if (upstream_) {
      const auto answer = upstream_->models();
      response.status = answer.status;
      response.set_content(answer.body, json);
      return;
    }
    response.set_content(
        toText(Json{{"data", Json::array({{{"id", modelName}, {"name", "Local text work"}, {"enabled", true}}})}}),
        json);
  });
  // Callers add a slash at both the root and the path.
  server_->Post("/api/+app/statistics", [](const auto& request, auto& response) {
    try {
      const Json body = parseJson(request.body);
      const JsonObject fields(body);
      if (const Json* counts = fields.find("statistics"); counts == nullptr || !counts->is_object()) {
        throw DecodingError("statistics", "is missing or no object");
      }
      response.set_content(R"({"success":true})", json);
    } catch (const DecodingError& error) {
      fail(response, 400, error.what());
    }
  });
  server_->Get("/api/app/version", [this](const auto&, auto& response) {
    response.set_content(toText(Json{{"version", settings_.version},
                                     {"updateUrl", "http://127.0.0.1:" + std::to_string(port_) + "/download"}}),
                         json);
  });
  server_->Get("/api/prompts", [](const auto&, auto& response) { response.set_content(toText(templates()), json); });
  server_->Get("/api/prompts/([^/]+)", [](const auto& request, auto& response) {
    const std::string slug = request.matches[1];
    for (const auto& record : templates()) {
      if (record["slug"] == slug) {
        response.set_content(toText(record), json);
        return;
      }
    }
    fail(response, 404, "no template has the slug " + slug);
  });
  server_->Get("/download", [](const auto&, auto& response) {
    response.set_content(page("Download",
                              "This is Quillmark's local service. New versions of a program that was built "
                              "from its sources come from its sources."),
                         html);
  });
  server_->Get("/changelog", [](const auto&, auto& response) {
    response.set_content(page("Changes", "The changes of each version are in the file CHANGELOG.md of the sources."),
                         html);
  });
  server_->set_error_handler([](const auto& request, auto& response) {
    if (!response.body.empty()) {
      return;
    }
    const std::string message = response.status == 404   ? "nothing is served at " + request.path
                                : response.status == 413 ? std::string("the request is larger than 32 MB")
                                                         : std::string("the request can't be served");
    response.set_content(errorBody(message), json);
  });
  server_->set_exception_handler([](const auto&, auto& response, std::exception_ptr problem) {
    try {
      std::rethrow_exception(problem);
    } catch (const std::exception& error) {
      fail(response, 500, error.what());
    } catch (...) {
      fail(response, 500, "unknown failure");
    }
  });
}

void Service::complete(const httplib::Request& request, httplib::Response& response) {
  CompletionRequest asked;
  Json body;
  try {
    body = parseJson(request.body);
    asked = readCompletionRequest(body);
  } catch (const DecodingError& error) {
    fail(response, 400, error.what());
    return;
  }
  if (!waitDelay()) {
    fail(response, 503, "the service is stopping");
    return;
  }
  if (upstream_) {
    completeUpstream(body, asked.stream, response);
    return;
  }
  auto answer = work_.answer(asked.systemPrompt, asked.text);
  if (!asked.stream) {
    response.set_content(completion(asked.model.empty() ? modelName : asked.model, answer), json);
    return;
  }
  response.set_chunked_content_provider(
      plainText, [escaped = escapedForStream(answer)](std::size_t, httplib::DataSink& sink) {
        for (const auto chunk : streamChunks(escaped, std::max(streamChunkBytes, escaped.size() / 200))) {
          if (!sink.write(chunk.data(), chunk.size())) {
            return false;
          }
        }
        sink.done();
        return true;
      });
}

void Service::completeUpstream(const Json& body, bool streamed, httplib::Response& response) {
  if (!streamed) {
    const auto answer = upstream_->complete(body);
    response.status = answer.status;
    response.set_content(answer.body, json);
    return;
  }
  auto stream = upstream_->stream(body);
  if (const int status = stream->status(); status < 200 || status >= 300) {
    response.status = status;
    response.set_content(stream->error(), json);
    return;
  }
  response.set_chunked_content_provider(plainText, [stream](std::size_t, httplib::DataSink& sink) {
    while (const auto text = stream->next()) {
      const auto escaped = escapedForStream(*text);
      if (!escaped.empty() && !sink.write(escaped.data(), escaped.size())) {
        return false;
      }
    }
    sink.done();
    return true;
  });
}

}  // namespace quillmark::service
