#include "cli/TextRun.h"

#include <array>
#include <cstdio>

#include <unistd.h>

#include "base/Slug.h"
#include "base/Text.h"
#include "cli/Session.h"
#include "commands/PromptGenerator.h"

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

bool takesParameter(const UserAction& action) {
  return action.kind == ActionCase::translate || action.kind == ActionCase::changeTone ||
         action.kind == ActionCase::freeStyle;
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
    if (!takesParameter(command->type)) {
      complain("the command " + run.slug + " takes no --param");
      return std::nullopt;
    }
    command->type.parameter = run.parameter;
  } else if (takesParameter(command->type) && !command->type.parameter) {
    complain("the command " + run.slug + " needs --param with a language, a tone or a task");
    return std::nullopt;
  }
  return command;
}

std::optional<ProviderConfig> findProvider(const Session& session, const Command& command, const TextRun& run) {
  std::optional<ProviderConfig> config;
  if (run.provider) {
    config = session.providerCalled(*run.provider);
    if (!config) {
      return std::nullopt;
    }
  } else {
    config = session.providerStore.config(command.provider);
    if (!config) {
      complain("the command's provider could not be found");
      return std::nullopt;
    }
  }
  if (!config->enabled) {
    complain("the provider " + config->name + " is disabled");
    return std::nullopt;
  }
  return config;
}

}  // namespace

int run(const TextRun& run) {
  Session session(run.dataDirectory, Session::Http::whileStoresLoad);
  const auto command = findCommand(session, run);
  if (!command) {
    return 1;
  }
  const auto config = findProvider(session, *command, run);
  if (!config) {
    return 1;
  }
  // The final line end belongs to the line, not to the text: it goes back behind the answer.
  std::string input = readStandardInput();
  const bool endsLine = input.ends_with('\n');
  if (endsLine) {
    input.pop_back();
  }
  if (input.empty()) {
    complain("there is no text on standard input");
    return 1;
  }

  const std::string prompt = promptFor(*command, session.variablesStore.allVariables());
  const auto provider = session.providerFactory.makeProvider(*config);
  const auto model = run.model ? run.model : command->model;

  bool answered = false;
  const auto end = [&session](bool hasAnswer, bool& flag) {
    flag = hasAnswer;
    session.finish();
  };
  if (run.stream) {
    provider->streamChat(input, prompt, model, write,
                         [&](const std::optional<std::string>& whole) { end(whole.has_value(), answered); });
  } else {
    provider->chat(input, prompt, model, [&](std::optional<std::string> answer) {
      session.queue.async([&, answer = std::move(answer)] {
        write(answer.value_or(""));
        end(answer.has_value(), answered);
      });
    });
  }
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
