#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "base/Log.h"
#include "base/Trace.h"
#include "cli/Providers.h"
#include "cli/Session.h"
#include "cli/Settings.h"
#include "cli/TextRun.h"
#include "cli/Trigger.h"
#include "platform/posix/SystemInfo.h"

namespace {

using namespace quillmark;

/// Becomes the desktop program, which is beside this one, in the library directory, or in the build tree.
int startDesktop(const std::string& dataDirectory) {
  std::error_code ignored;
  const auto here = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  for (const auto& place :
       {here / "quillmark-desktop", here / "../libexec/quillmark-desktop", here / "../app/quillmark-desktop"}) {
    std::vector<std::string> arguments{place.string()};
    if (!dataDirectory.empty()) {
      arguments.insert(arguments.end(), {"--data-dir", dataDirectory});
    }
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (auto& argument : arguments) {
      pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    execv(pointers.front(), pointers.data());
  }
  cli::complain("the desktop program quillmark-desktop is not installed");
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  trace::open();
  trace::mark(trace::processStarted);
  CLI::App app(
      "Quillmark: AI text transformation for every application. Without a command it starts the desktop "
      "program.",
      "quillmark");
  app.set_version_flag("--version", "quillmark " + bundle().shortVersion.value_or("Unknown"));
  app.require_subcommand(0, 1);
  app.fallthrough();

  std::string dataDirectory;
  bool verbose = false;
  app.add_option("--data-dir", dataDirectory, "directory of the stored data, instead of the user's");
  app.add_flag("-v,--verbose", verbose, "write the log to standard error");

  cli::TextRun textRun;
  auto* run = app.add_subcommand("run", "run a command on the text from standard input");
  run->add_option("slug", textRun.slug, "slug of the command, as 'quillmark list' shows it")->required();
  run->add_option("--param", textRun.parameter, "language, tone or task of commands that take one");
  run->add_option("--provider", textRun.provider, "name of the provider to ask, instead of the command's");
  run->add_option("--model", textRun.model, "model to ask, instead of the command's");
  run->add_flag("--stream", textRun.stream, "write the answer as it arrives");

  auto* list = app.add_subcommand("list", "show the slug and the name of each command");

  std::string slug;
  auto* trigger = app.add_subcommand("trigger", "have the running Quillmark run a command on the selection in front");
  trigger->add_option("slug", slug, "slug of the command, or command-menu")->required();

  std::string providerName;
  auto* providers = app.add_subcommand("providers", "show the configured backends and ask them");
  providers->require_subcommand(0, 1);
  auto* verify = providers->add_subcommand("verify", "see whether one answers with its stored key");
  auto* models = providers->add_subcommand("models", "show the models that one lists");
  auto* change = providers->add_subcommand("set", "change one");
  for (auto* subcommand : {verify, models, change}) {
    subcommand->add_option("name", providerName, "name or slug of the provider")->required();
  }
  cli::ProviderChanges changes;
  change->add_flag("--key", changes.readsKey, "take its key from the first line of standard input");
  change->add_option("--base-url", changes.baseURL, "its address");
  change->add_option("--model", changes.defaultModel, "the model that it is asked for when a command names none");
  change->add_flag("--enable,!--disable", changes.enabled, "whether it may be asked");
  change->add_flag("--default", changes.makesDefault, "have commands that name no provider use it");
  std::string providerType;
  auto* add = providers->add_subcommand("add", "add one");
  add->add_option("type", providerType, "kind of backend, such as groq or openai-compatible")->required();
  add->add_option("name", providerName, "what it is to be called")->required();

  std::string key;
  std::string typeOrValue;
  std::string value;
  auto* defaults = app.add_subcommand("defaults", "read and change stored settings");
  defaults->require_subcommand(1);
  auto* listSettings = defaults->add_subcommand("list", "show every key and its value");
  auto* read = defaults->add_subcommand("read", "show the value of a key");
  read->add_option("key", key)->required();
  auto* write = defaults->add_subcommand("write", "store a value");
  write->add_option("key", key)->required();
  write->add_option("type", typeOrValue, "bool, int, double or string; not needed for the keys of 'defaults list'")
      ->required();
  auto* withType = write->add_option("value", value);
  auto* remove = defaults->add_subcommand("remove", "remove a key");
  remove->add_option("key", key)->required();

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }

  setLogSink([verbose](std::string_view line) {
    if (verbose) {
      std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
    }
  });
  if (run->parsed()) {
    textRun.dataDirectory = dataDirectory;
    return cli::run(textRun);
  }
  if (list->parsed()) {
    return cli::list(dataDirectory);
  }
  if (trigger->parsed()) {
    return cli::trigger(slug);
  }
  if (verify->parsed()) {
    return cli::verifyProvider(dataDirectory, providerName);
  }
  if (models->parsed()) {
    return cli::listModels(dataDirectory, providerName);
  }
  if (change->parsed()) {
    return cli::changeProvider(dataDirectory, providerName, changes);
  }
  if (add->parsed()) {
    return cli::addProvider(dataDirectory, providerType, providerName);
  }
  if (providers->parsed()) {
    return cli::listProviders(dataDirectory);
  }
  if (listSettings->parsed()) {
    return cli::listSettings(dataDirectory);
  }
  if (read->parsed()) {
    return cli::readSettings(dataDirectory, key);
  }
  if (write->parsed()) {
    return *withType ? cli::writeSetting(dataDirectory, key, typeOrValue, value)
                     : cli::writeSetting(dataDirectory, key, std::nullopt, typeOrValue);
  }
  if (remove->parsed()) {
    return cli::removeSetting(dataDirectory, key);
  }
  return startDesktop(dataDirectory);
}
