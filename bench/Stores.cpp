#include "bench/Stores.h"

#include <functional>
#include <stdexcept>

#include "base/Log.h"
#include "bench/Measurements.h"
#include "commands/CustomPromptStore.h"
#include "commands/LanguageStore.h"
#include "commands/ToneStore.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/posix/PosixMainQueue.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/TemporaryDirectory.h"
#include "support/Trace.h"

namespace quillmark::bench {
namespace {

std::filesystem::path fileIn(const std::filesystem::path& data) { return data / "defaults.sqlite"; }

std::string numbered(std::string_view what, std::size_t number) {
  return std::string(what).append(" ").append(std::to_string(number));
}

}  // namespace

void fillStore(const std::filesystem::path& data, const StoreSize& size) {
  SqliteUserDefaults defaults(fileIn(data));
  CustomPromptStore store(defaults);
  store.load();
  auto list = store.prompts.get();
  while (list.size() < size.commands) {
    const std::string name = numbered("My command", list.size());
    list.push_back(Command::make(name, std::nullopt, "Rewrite the following text as " + name + ": {{text}}",
                                 std::nullopt, CommandCategory::customAction));
  }
  (void)store.save([&](auto& stored) { stored = std::move(list); }, std::nullopt);

  const IcuLocaleInfo locale("en");
  LanguageStore languages(defaults, locale);
  const auto available = languages.availableLanguages();
  auto items = languages.items();
  for (std::size_t next = 0; items.size() < size.languages; ++next) {
    const auto& id = available.at(next);
    items.push_back({id, id, std::nullopt, true, std::ssize(items), false});
  }
  (void)languages.save([&](auto& stored) { stored = std::move(items); });
  ToneStore tones(defaults);
  while (tones.items().size() < size.tones) {
    if (!tones.addCustomTone(numbered("Tone", tones.items().size()))) {
      throw std::runtime_error("a tone can't be added");
    }
  }
}

void measureStores(int runs, Figures& figures) {
  setLogSink([](std::string_view) {});
  const TemporaryDirectory data;
  fillStore(data.path(), largeStore);
  const std::string size = std::to_string(largeStore.commands) + " commands";

  figures.add({"loading " + size, "ms",
               timesOf(runs,
                       [&] {
                         SqliteUserDefaults defaults(fileIn(data.path()));
                         CustomPromptStore store(defaults);
                         store.load();
                       }),
               std::nullopt});

  SqliteUserDefaults defaults(fileIn(data.path()));
  const IcuLocaleInfo locale("en");
  PosixMainQueue queue;
  LanguageStore languages(defaults, locale);
  ToneStore tones(defaults);
  CustomPromptStore store(defaults, CustomPromptStore::Expansions{languages, tones, queue});
  store.load();
  figures.add({"saving " + size + ", until they are on the disk", "ms",
               timesOf(runs,
                       [&] {
                         store.incrementUsage(store.prompts.get().front().id);  // a different list each time
                         (void)store.save([](auto&) {}, std::nullopt);
                       }),
               std::nullopt});

  const std::size_t entries = store.searchableCommands.get().size();
  if (entries < largeStore.commands + largeStore.languages + largeStore.tones - 20) {
    throw std::runtime_error("the flat list has only " + std::to_string(entries) + " entries");
  }
  figures.add({"buildSearchableCommands, " + std::to_string(entries) + " entries", "ms",
               timesOf(runs, [&] { store.buildSearchableCommands(); }), 3});
  setLogSink({});
}

}  // namespace quillmark::bench
