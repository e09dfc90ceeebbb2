#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillmark {

/// How a value is kept in the user's defaults database.
enum class StoredForm { boolean, integer, number, string, strings, data };

/// What a list of all values shows of one.
enum class Disclosure { value, size, presence };

/// A key of the defaults database and what holds while nothing is stored under it.
struct StoredKey {
  const char* name;
  StoredForm form;
  const char* fallback;  ///< as text; nullptr: there is no value
  const char* meaning;   ///< for people
  Disclosure shown = Disclosure::value;

  /// Whether this is the common start of several keys.
  constexpr bool isFamily() const { return std::string_view(name).ends_with('_'); }
};

/// Every key that the program reads or writes. Each has one owner: one class that names it, besides the list below
/// (`tools/lint/keys` looks). Records are JSON arrays in UTF-8.
namespace keys {

using enum StoredForm;

// Runs
inline constexpr StoredKey defaultBehavior{"defaultBehavior", string, "showReview",
                                           "what a command without a behaviour of its own does with the answer"};
inline constexpr StoredKey isLoading{"main.isLoading", boolean, "false", "a direct run is under way"};
inline constexpr StoredKey statistics{"quillmark.statistics", data, nullptr, "counters of use"};

// Panels
inline constexpr StoredKey comparisonEnabled{"reviewPanel.comparisonEnabled", boolean, "true",
                                             "the review panel offers comparisons"};
inline constexpr StoredKey reviewWindowPosition{"reviewPanel.windowPosition", string, "center",
                                                "where the review panel opens: center or nearMouse"};
inline constexpr StoredKey windowSizing{"reviewPanel.windowSizing", string, "dynamic",
                                        "size of the review panel: dynamic or fixed"};
inline constexpr StoredKey commandMenuPosition{"commandMenu.position", string, "center",
                                               "where the command menu opens: center or nearMouse"};

// Languages of the user and of the program
inline constexpr StoredKey preferredLocale{"preferredLocale", string, "none",
                                           "dialect that prompts ask the model to write in, such as en_GB"};
inline constexpr StoredKey debugAppLanguage{"debugAppLanguage", string, "system",
                                            "language of the interface from the next start on, such as de"};
inline constexpr StoredKey appleLanguages{"AppleLanguages", strings, nullptr,
                                          "the chosen interface language, alone; absent for the system's"};

// Versions and first run
inline constexpr StoredKey appVersion{"appVersion", string, "", "the version that ran last"};
inline constexpr StoredKey lastMigratedVersion{"lastMigratedVersion", string, "",
                                               "the version up to which the commands are brought up to date"};
inline constexpr StoredKey hasCompletedOnboarding{"hasCompletedOnboarding", boolean, "false",
                                                  "the first-run flow is over"};
inline constexpr StoredKey hasSetupShortcut{"hasSetupShortcut", boolean, "false",
                                            "the first-run flow has seen a shortcut of the command menu"};
inline constexpr StoredKey showDockIcon{"showDockIcon", boolean, "false", "the program has a task bar entry"};

// The hosted service and updates
inline constexpr StoredKey useLocalApi{"useLocalApi", boolean, "false",
                                       "a server on this machine stands in for the hosted service"};
inline constexpr StoredKey serviceToken{"serviceToken", string, "", "what the hosted service knows this program by",
                                        Disclosure::presence};
inline constexpr StoredKey updateAvailable{"updateAvailable", boolean, "false", "a newer version is known"};
inline constexpr StoredKey updateUrl{"updateUrl", string, nullptr, "where to get the newer version"};
inline constexpr StoredKey newVersion{"newVersion", string, nullptr, "the newer version"};
inline constexpr StoredKey automaticChecks{"SUEnableAutomaticChecks", boolean, "false",
                                           "new versions are looked for in the background"};

// Providers
inline constexpr StoredKey defaultProvider{"defaultProvider", string, "",
                                           "UUID of the provider that commands use unless they name one"};
inline constexpr StoredKey oldApiKey{"apiKey", string, "", "key of a set-up with one provider, moved at the next start",
                                     Disclosure::presence};
inline constexpr StoredKey providerStore{"providerStore", data, nullptr, "records of the configured providers"};
inline constexpr StoredKey models{"models", string, "", "records of the known models", Disclosure::size};

// Commands and what they are made of
inline constexpr StoredKey customPrompts{"customPrompts2", data, nullptr, "records of the commands"};
inline constexpr StoredKey cachedTemplates{"cachedTemplates", data, nullptr, "records of the template catalogue"};
inline constexpr StoredKey templatesLastFetch{"templatesLastFetch", number, "0",
                                              "when the catalogue was fetched, in seconds since 1970"};
inline constexpr StoredKey cachedTemplatesCount{"cachedTemplatesCount", integer, "0", "length of the catalogue"};
inline constexpr StoredKey variables{"variablesStoreKey", data, nullptr, "records of the user's variables"};
inline constexpr StoredKey languageSettings{"languageSettings", data, nullptr, "records of the languages"};
inline constexpr StoredKey languageSelection{"languageSettings_defaultSelection", string, nullptr,
                                             "id of the language that the translate shortcut takes"};
inline constexpr StoredKey oldLanguageSelection{"defaultLanguage", string, nullptr,
                                                "name of that language in an old version, moved at the next start"};
inline constexpr StoredKey toneSettings{"toneSettings", data, nullptr, "records of the tones"};
inline constexpr StoredKey toneSelection{"toneSettings_defaultSelection", string, nullptr,
                                         "id of the tone that the change-tone shortcut takes"};
inline constexpr StoredKey oldToneSelection{"defaultTone", string, nullptr,
                                            "name of that tone in an old version, moved at the next start"};

/// The start of a family of keys: the name of a shortcut follows. The value is the JSON of a key combination.
inline constexpr StoredKey keyboardShortcuts{"KeyboardShortcuts_", string, nullptr,
                                             "key combination, such as {\"carbonKeyCode\":5,\"carbonModifiers\":6144}"};

inline constexpr std::array all{
    defaultBehavior,
    isLoading,
    statistics,
    comparisonEnabled,
    reviewWindowPosition,
    windowSizing,
    commandMenuPosition,
    preferredLocale,
    debugAppLanguage,
    appleLanguages,
    appVersion,
    lastMigratedVersion,
    hasCompletedOnboarding,
    hasSetupShortcut,
    showDockIcon,
    useLocalApi,
    serviceToken,
    updateAvailable,
    updateUrl,
    newVersion,
    automaticChecks,
    defaultProvider,
    oldApiKey,
    providerStore,
    models,
    customPrompts,
    cachedTemplates,
    templatesLastFetch,
    cachedTemplatesCount,
    variables,
    languageSettings,
    languageSelection,
    oldLanguageSelection,
    toneSettings,
    toneSelection,
    oldToneSelection,
    keyboardShortcuts,
};

/// Nothing for a name that no key has; every shortcut's key belongs to one family.
constexpr std::optional<StoredKey> find(std::string_view name) {
  for (const StoredKey& key : all) {
    if (name == key.name || (key.isFamily() && name.starts_with(key.name))) {
      return key;
    }
  }
  return std::nullopt;
}

}  // namespace keys
}  // namespace quillmark
