// The streams that are read without state: the shared line handling of chat completions, and plain text.

#include <memory>
#include <optional>

#include "base/Log.h"
#include "base/Text.h"
#include "fuzz/Fuzz.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "providers/ProviderFactory.h"
#include "providers/SSEStreamParser.h"

using namespace quillmark;

namespace {

struct Environment {
  SimulatedDesktop desktop;
  AlertHandler alertHandler{desktop.queue, desktop.alerts};
  AppConfig appConfig{desktop.defaults};
  HttpTransport transport{desktop.http, desktop.queue, {}, {"Linux", 6, 1, 0}, desktop.locale};
  ProviderFactory factory{{transport, desktop.http, desktop.queue, alertHandler, desktop.defaults, appConfig}};
};

/// A whole stream through a provider, in these blocks.
void play(ProviderType type, const std::vector<std::string>& blocks) {
  static Environment environment;
  environment.desktop.http.exchanges.clear();
  std::string pieces;
  int ends = 0;
  environment.factory.makeProvider(ProviderConfig::make({.providerType = type, .baseURL = "http://host"}))
      ->streamChat(
          "", "", "m",
          [&](const std::string& piece) {
            fuzz::expect(ends == 0, "nothing comes after the end");
            pieces += piece;
          },
          [&](const std::optional<std::string>& whole) {
            fuzz::expect(whole.value_or("") == pieces && whole != "", "the whole is what came in pieces");
            ++ends;
          });
  const auto& exchange = environment.desktop.http.exchanges.back();
  exchange.head(200, "text/event-stream");
  for (const auto& block : blocks) {
    exchange.bytes(block);
  }
  exchange.end();
  environment.desktop.queue.settle();
  fuzz::expect(ends == 1, "a stream ends once");
}

/// Lines are independent of each other: handled one by one, they give the same result.
void handleByLine(const std::string& chunk) {
  std::vector<std::string> pieces;
  const bool ended =
      SSEStreamParser::handleChunk(chunk, [&](std::string piece) { pieces.push_back(std::move(piece)); });
  std::vector<std::string> byLine;
  bool endedByLine = false;
  for (const auto line : text::splitAtNewlines(chunk)) {
    endedByLine = endedByLine ||
                  SSEStreamParser::handleChunk(line, [&](std::string piece) { byLine.push_back(std::move(piece)); });
  }
  fuzz::expect(pieces == byLine && ended == endedByLine, "lines are independent of each other");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  setLogSink([](std::string_view) {});
  const fuzz::Input input(data, size);
  handleByLine(text::decodeUtf8(input.text));
  for (const auto type : {ProviderType::openAICompatible, ProviderType::quillMark}) {
    play(type, {std::string(input.text)});
    play(type, input.inTwo());
  }
  return 0;
}
