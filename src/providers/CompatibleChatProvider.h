#pragma once

#include <functional>
#include <string>
#include <vector>

#include "providers/AIProvider.h"
#include "providers/ChatCompletions.h"
#include "providers/ModelListing.h"
#include "providers/ProviderEnvironment.h"

namespace quillmark {

/// What is particular to one backend of the chat completions dialect; the rest is shared.
struct ChatDialect {
  enum class Stream { serverSentEvents, plainText };

  std::string chatUrl;
  /// Absent: the backend has no listing, and none is requested.
  std::optional<std::string> modelsUrl;
  std::string authorization;  ///< what follows "Bearer "
  std::vector<HttpHeader> extraHeaders;
  Stream stream = Stream::serverSentEvents;
  std::string streamEndLine;  ///< logged when the end of the connection ends a stream
  std::function<AlertKind(std::string)> alert;
  /// The name of a model in a request.
  std::function<std::string(std::string)> modelName = [](std::string model) { return model; };
  struct ChatRecord {
    const char* name;
    GenericChatResult (*decode)(const Json&);
  };
  ChatRecord chatRecord{"GenericChatResult", genericChatResultFromJson};
  ModelListing listing;
};

/// A backend of the chat completions dialect: single answers, streamed answers and the model listing.
class CompatibleChatProvider : public AIProvider {
 public:
  void chat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
            ChatCompletion completion) override;
  void streamChat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
                  std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) override;
  void listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) override;

 protected:
  CompatibleChatProvider(ProviderConfig config, ProviderType type, const ProviderEnvironment& environment)
      : AIProvider(std::move(config), type), environment_(environment) {}

  /// Called for each request, so that it follows settings and baseURL().
  virtual ChatDialect dialect() const = 0;

  const ProviderEnvironment& environment() const { return environment_; }

 private:
  TransportRequest request(const ChatDialect& dialect, std::string method, std::string url) const;
  TransportRequest chatRequest(const ChatDialect& dialect, const std::string& text, const std::string& systemPrompt,
                               const std::optional<std::string>& model, bool stream) const;

  ProviderEnvironment environment_;
};

}  // namespace quillmark
