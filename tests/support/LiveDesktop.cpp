#include "support/LiveDesktop.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <stdexcept>

#include "platform/posix/SqliteUserDefaults.h"

namespace quillmark {

using namespace std::chrono_literals;

Sample sampleText(int number) {
  constexpr std::array<std::array<const char*, 2>, 7> sentences = {{
      {"teh cat sat on teh mat", "the cat sat on the mat"},
      {"i beleive the documnet is wierd", "I believe the document is weird"},
      {"becuase the freind is writting\n\nteh end", "because the friend is writing\n\nthe end"},
      {"untill the goverment has a seperate adress", "until the government has a separate address"},
      {"wich sentance needs better grammer", "which sentence needs better grammar"},
      {"definately the cat occured again\n\nteh end", "definitely the cat occurred again\n\nthe end"},
      {"teh freind will recieve it tommorow", "the friend will receive it tomorrow"},
  }};
  const auto& [typed, corrected] = sentences[static_cast<std::size_t>(number) % sentences.size()];
  const std::string name = " n" + std::to_string(number);
  return {typed + name, corrected + name};
}

void prepareData(const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  SqliteUserDefaults defaults(directory / "defaults.sqlite");
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  const std::pair<const char*, DefaultsValue> settings[] = {
      {"useLocalApi", true},
      {"templatesLastFetch", now.count()},  // the only requests are those of runs
      {"hasCompletedOnboarding", true},
      {"defaultBehavior", std::string("replaceSelection")},
      {"KeyboardShortcuts_fixGrammar", std::string(R"({"carbonKeyCode":5,"carbonModifiers":6144})")},
  };
  for (const auto& [key, value] : settings) {
    if (!defaults.set(key, value)) {
      throw std::runtime_error(std::string("the setting ") + key + " can't be stored");
    }
  }
}

LiveDesktop::LiveDesktop(const Programs& programs, std::chrono::milliseconds serviceDelay)
    : trace_(session_.home() / "trace"), program_(programs.quillmark) {
  const auto output = session_.home() / "service.log";
  service_ =
      session_.start({programs.service, "--port", "0", "--delay-ms", std::to_string(serviceDelay.count())}, output);
  const auto port = waitForOutput(output, "listening on http://127.0.0.1:");
  if (!port) {
    throw std::runtime_error("the local service does not listen: " + readFile(output));
  }
  setUp(*port);
}

LiveDesktop::LiveDesktop(std::filesystem::path quillmark, int backendPort)
    : trace_(session_.home() / "trace"), program_(std::move(quillmark)) {
  setUp(std::to_string(backendPort));
}

void LiveDesktop::setUp(const std::string& backendPort) {
  auto& environment = session_.environment();
  const auto busSocket = session_.home() / "bus";
  environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + busSocket.string();
  environment["QUILLMARK_TRACE"] = trace_.file();
  environment["QUILLMARK_LOCAL_PORT"] = backendPort;
  bus_ = session_.start(
      {"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + environment["DBUS_SESSION_BUS_ADDRESS"]});
  if (!waitUntil([&] { return std::filesystem::exists(busSocket); })) {
    throw std::runtime_error("the session bus does not come up");
  }
  // Editors that add a line end when they save would change what is compared.
  writeFile(session_.home() / ".config/featherpad/fp.conf", "[text]\nappendEmptyLine=false\n");
  prepareData(data());
  startQuillmark();
}

void LiveDesktop::startQuillmark() {
  trace_.startAnew();
  quillmark_ = session_.start({program_, "--data-dir", data()}, session_.home() / "quillmark.log");
  waitUntil([this] { return !quillmark_->running() || trace_.momentOf(trace::ready); });
  if (!quillmark_->running()) {
    throw std::runtime_error("Quillmark does not come up: " + quillmarkLog());
  }
}

bool LiveDesktop::quillmarkEndsWell() {
  quillmark_->signal(SIGTERM);
  return quillmark_->exitStatus() == 0;
}

void LiveDesktop::triggerHotKey() { session_.tap({"Control_L", "Alt_L", "g"}); }

std::string LiveDesktop::quillmarkLog() const {
  constexpr std::size_t enough = 2000;
  const auto log = readFile(session_.home() / "quillmark.log");
  return log.size() <= enough ? log : log.substr(log.size() - enough);
}

void LiveDesktop::takePicture(const std::filesystem::path& file) const {
  if (session_.run({"import", "-silent", "-window", "root", file}) != 0) {
    throw std::runtime_error("no picture of the screen");
  }
}

Editor::Editor(LiveDesktop& desk, const std::string& kind, const std::string& contents)
    : desk_(desk), file_(desk.home() / "letter.txt") {
  writeFile(file_, contents);
  if (kind == "mousepad") {
    process_ = desk.session().start({"mousepad", "--disable-server", file_});
  } else if (kind == "featherpad") {
    process_ = desk.session().start({"featherpad", "--standalone", file_});
  } else {
    throw std::runtime_error("no such editor: " + kind);
  }
  window_ = desk.session().waitForWindow(process_->pid());
  if (!waitUntil([this] {
        for (const auto& window : desk_.session().windows()) {
          if (window.id == window_.id && window.title.find("letter.txt") != std::string::npos) {
            return true;
          }
        }
        return false;
      })) {
    throw std::runtime_error(kind + " does not open the file");
  }
  focus();
}

void Editor::focus() { desk_.session().activate(window_.id); }

void Editor::write(const std::string& text) {
  selectAll();
  desk_.session().type(text);
  if (!savesAs(text, 20s)) {
    throw std::runtime_error("the editor did not take what was typed: " + shown(fileContents()));
  }
}

void Editor::selectAll() { desk_.session().tap({"Control_L", "a"}); }

void Editor::deselect() { desk_.session().tap({"Control_L", "End"}); }

bool Editor::savesAs(const std::string& text, std::chrono::milliseconds deadline) {
  auto nextSave = Moment{};
  auto pause = 10ms;
  return waitUntil(
      [&] {
        if (fileContents() == text) {
          return true;
        }
        // A save that overtook the paste is repeated; ever less often, since the editor may have a large text to write.
        if (now() > nextSave) {
          desk_.session().tap({"Control_L", "s"});
          nextSave = now() + pause;
          pause = std::min(pause * 2, 200ms);
        }
        return false;
      },
      deadline);
}

std::string Editor::fileContents() const { return readFile(file_); }

std::string shown(std::string_view text) {
  constexpr std::size_t enough = 120;
  std::string result = "\"";
  for (const char c : text.substr(0, enough)) {
    result += c == '\n' ? std::string("\\n") : c == '\t' ? std::string("\\t") : std::string(1, c);
  }
  return result + (text.size() > enough ? "...\" (" + std::to_string(text.size()) + " bytes)" : "\"");
}

}  // namespace quillmark
