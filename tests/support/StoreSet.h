#pragma once

#include "commands/CustomPromptStore.h"
#include "commands/LanguageStore.h"
#include "commands/ToneStore.h"
#include "commands/VariablesStore.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "providers/ModelStore.h"
#include "providers/ProviderStore.h"

namespace quillmark {

/// Every store of the user's data over one defaults database, loaded as a start does.
struct StoreSet {
  explicit StoreSet(UserDefaults& defaults)
      : languages(defaults, locale),
        tones(defaults),
        commands(defaults, CustomPromptStore::Expansions{languages, tones, queue}),
        variables(defaults, locale),
        providers(defaults),
        models(defaults) {
    commands.load();
    providers.load();
    models.initializeDefaultModels();
  }

  SimulatedLocale locale;
  SimulatedQueue queue;
  LanguageStore languages;
  ToneStore tones;
  CustomPromptStore commands;
  VariablesStore variables;
  ProviderStore providers;
  ModelStore models;
};

}  // namespace quillmark
