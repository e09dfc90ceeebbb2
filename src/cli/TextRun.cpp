#include "cli/TextRun.h"

#include <array>
#include <cstdio>

#include <unistd.h>

#include "base/Slug.h"
#include "base/Text.h"
#include "cli/Session.h"
#include "execution/PreparedRun.h"

namespace quillmark::cli {
namespace {

std::string readStandardInput() {
  std::string input;
  std::array<char, 65536> buffer;
  for (std::size_t count = 0; (count = std::fread(buffer.data(), 1, buffer.size(), stdin)) > 0;) {
    input.append(buffer.data(), count);
  }
  return text::decodeUtf8(input);
}

void write(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

std::optional<Command> findCommand(const Session& session, const TextRun& run) {
  auto command = session.promptStore.commandForSlug(run.slug);
  if (!command && run.slug == slugify(UserAction(ActionCase::freeStyle).englishTitle())) {
    command = session.promptStore.commandFor(ActionCase::freeStyle);
  }
  if (!command) {
    complain("no command has the slug " + run.slug + "; 'quillmark list' shows those there are");
    return std::nullopt;
  }
  if (run.parameter) {
    if (!info(command->type.kind).takesParameter()) {
      complain("the command " + run.slug + " takes no --param");
      return std::nullopt;
    }
    command->type.parameter = run.parameter;
  } else if (info(command->type.kind).takesParameter() && !command->type.parameter) {
    complain("the command " + run.slug + " needs --param with a language, a tone or a task");
    return std::nullopt;
  }
  return command;
}

std::optional<PreparedRun> prepare(const Session& session, Command command, const TextRun& run) {
  command.model = run.model ? run.model : command.model;
  const RunSources sources{session.variablesStore, session.providerStore, session.providerFactory};
  const auto config =
      run.provider ? session.providerCalled(*run.provider) : session.providerStore.config(command.provider);
  if (run.provider && !config) {
    return std::nullopt;
  }
  auto prepared = prepareRun(command, config, sources);
  if (prepared) {
    return std::move(*prepared);
  }
  switch (prepared.error().reason) {
    case RunRefusal::Reason::providerNotFound:
      complain("the command's provider could not be found");
      break;
    case RunRefusal::Reason::providerDisabled:
      complain("the provider " + prepared.error().providerName + " is disabled");
      break;
  }
  return std::nullopt;
}

}  // namespace

int run(const TextRun& run) {
  Session session(run.dataDirectory, Session::Http::whileStoresLoad);
  const auto command = findCommand(session, run);
  if (!command) {
    return 1;
  }
  const auto prepared = prepare(session, *command, run);
  if (!prepared) {
    return 1;
  }
  // The final line end is not part of the text: it is added back after the answer.
  std::string input = readStandardInput();
  const bool endsLine = input.ends_with('\n');
  if (endsLine) {
    input.pop_back();
  }
  if (input.empty()) {
    complain("there is no text on standard input");
    return 1;
  }

  bool answered = false;
  const auto finish = [&](const std::optional<std::string>& answer) {
    if (!run.stream) {
      write(answer.value_or(""));
    }
    answered = answer.has_value();
    session.finish();
  };
  prepared->ask(input, session.queue, finish, run.stream ? std::function<void(const std::string&)>(write) : nullptr);
  session.run();
  if (!answered) {
    complain("there is no answer");
    return 1;
  }
  if (endsLine || isatty(STDOUT_FILENO) != 0) {
    write("\n");
  }
  return 0;
}

int list(const std::string& dataDirectory) {
  const Session session(dataDirectory);
  for (const auto& command : session.promptStore.prompts.get()) {
    write(slugify(command.name) + "\t" + command.displayName() + "\n");
  }
  return 0;
}

}  // namespace quillmark::cli
