#pragma once

#include "platform/AlertHandler.h"
#include "platform/HttpSession.h"
#include "platform/MainQueue.h"
#include "platform/UserDefaults.h"
#include "providers/AppConfig.h"
#include "providers/HttpTransport.h"
#include "providers/OpenAIClient.h"
#include "providers/ProviderType.h"

namespace quillmark {

/// What every provider object works with.
struct ProviderEnvironment {
  HttpTransport& transport;
  HttpSession& http;  ///< below the transport, for vendors with a client layer of their own
  MainQueue& queue;
  AlertHandler& alerts;
  UserDefaults& defaults;
  AppConfig& appConfig;
  /// Where OpenAI's service is; the provider sets the rest.
  OpenAIClient::Configuration openAI{.host = info(ProviderType::openAI).defaultBaseURL};
};

}  // namespace quillmark
