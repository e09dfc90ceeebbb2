#include "cli/Providers.h"

#include <cstdio>
#include <functional>
#include <iostream>

#include "base/Text.h"
#include "cli/Session.h"

namespace quillmark::cli {
namespace {

void print(const ProviderConfig& config) {
  std::printf("%s\t%s\t%s\t%s\n", config.slug.c_str(), config.name.c_str(), info(config.providerType).displayName,
              config.enabled ? "enabled" : "disabled");
}

/// Creates the provider and calls `question`, whose argument it must call once, on the main thread, with the outcome.
int ask(const std::string& dataDirectory, const std::string& name,
        const std::function<void(Session&, AIProvider&, std::function<void(bool)>)>& question) {
  Session session(dataDirectory);
  const auto config = session.providerCalled(name);
  if (!config) {
    return 1;
  }
  const auto provider = session.providerFactory.makeProvider(*config);
  bool good = false;
  question(session, *provider, [&](bool outcome) {
    good = outcome;
    session.finish();
  });
  session.run();
  return good ? 0 : 1;
}

}  // namespace

int listProviders(const std::string& dataDirectory) {
  const Session session(dataDirectory);
  for (const auto& config : session.providerStore.configs.get()) {
    print(config);
  }
  return 0;
}

int addProvider(const std::string& dataDirectory, const std::string& type, const std::string& name) {
  const auto kind = fromRawValue<ProviderType>(type);
  if (!kind) {
    std::string known;
    for (const auto each : allCases<ProviderType>()) {
      known += known.empty() ? "" : ", ";
      known += rawValue(each);
    }
    complain("no kind of provider is called " + type + "; there are " + known);
    return 1;
  }
  Session session(dataDirectory);
  if (!session.providerStore.addConfig(ProviderConfig::make({.providerType = *kind, .name = name}))) {
    return 1;
  }
  print(session.providerStore.configs.get().back());
  return 0;
}

int changeProvider(const std::string& dataDirectory, const std::string& name, const ProviderChanges& changes) {
  Session session(dataDirectory);
  const auto config = session.providerCalled(name);
  if (!config) {
    return 1;
  }
  std::optional<std::string> key;
  if (changes.readsKey) {
    std::string line;
    std::getline(std::cin, line);
    key = text::trimmed(line);
  }
  const bool stored = session.providerStore.changeConfig(config->id, [&](ProviderConfig& present) {
    present.apiKey = key.value_or(present.apiKey);
    present.baseURL = changes.baseURL.value_or(present.baseURL);
    present.defaultModel = changes.defaultModel.value_or(present.defaultModel);
    present.enabled = changes.enabled.value_or(present.enabled);
    if (changes.makesDefault) {
      session.providerStore.defaultProvider.set(present.id.toString());
    }
  });
  return stored ? 0 : 1;
}

int verifyProvider(const std::string& dataDirectory, const std::string& name) {
  return ask(dataDirectory, name, [](Session& session, AIProvider& provider, std::function<void(bool)> finish) {
    const auto tell = [finish = std::move(finish), called = provider.name()](bool valid) {
      if (valid) {
        std::printf("%s answers\n", called.c_str());
      } else {
        complain(called + " gives no answer");
      }
      finish(valid);
    };
    provider.validateApiKey(onMainQueue(session.queue, tell));
  });
}

int listModels(const std::string& dataDirectory, const std::string& name) {
  return ask(dataDirectory, name, [](Session&, AIProvider& provider, std::function<void(bool)> finish) {
    provider.listModels([finish = std::move(finish),
                         called = provider.name()](const std::optional<std::vector<ProviderModel>>& models) {
      if (!models) {
        complain(called + " lists no models; --verbose says why");
        finish(false);
        return;
      }
      for (const auto& model : *models) {
        std::printf("%s\n", model.identifier.c_str());
      }
      finish(true);
    });
  });
}

}  // namespace quillmark::cli
