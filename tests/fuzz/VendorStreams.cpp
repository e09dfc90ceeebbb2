// The event streams of the two vendors whose clients keep state from block to block.

#include <optional>

#include "fuzz/Fuzz.h"
#include "platform/simulated/SimulatedHttpSession.h"
#include "providers/AnthropicClient.h"
#include "providers/OpenAIClient.h"

using namespace quillmark;

namespace {

struct Outcome {
  std::vector<std::string> pieces;
  std::optional<std::string> failure;
  int ends = 0;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

void play(const SimulatedHttpSession& session, const std::vector<std::string>& blocks) {
  const auto& exchange = session.exchanges.back();
  exchange.head(200, "text/event-stream");
  for (const auto& block : blocks) {
    exchange.bytes(block);
  }
  exchange.end();
}

Outcome openAI(const std::vector<std::string>& blocks) {
  Outcome outcome;
  SimulatedHttpSession session;
  OpenAIClient(session, {.host = "host"})
      .chatsStream(
          {},
          [&](const ChatStreamResult& result) {
            fuzz::expect(outcome.ends == 0, "nothing comes after the end");
            outcome.pieces.push_back(result.choices.empty() ? "" : result.choices.front().content.value_or(""));
          },
          [&](const std::optional<std::string>& failure) {
            outcome.failure = failure;
            ++outcome.ends;
          });
  play(session, blocks);
  return outcome;
}

Outcome anthropic(const std::vector<std::string>& blocks) {
  Outcome outcome;
  SimulatedHttpSession session;
  AnthropicClient(session, "key", "http://host")
      .streamMessage(
          {},
          [&](const MessageStreamResponse& event) {
            fuzz::expect(outcome.ends == 0, "nothing comes after the end");
            outcome.pieces.push_back(event.deltaText.value_or(""));
          },
          [&](const std::optional<AnthropicClient::APIError>& failure) {
            outcome.failure = failure ? std::optional(failure->description) : std::nullopt;
            ++outcome.ends;
          });
  play(session, blocks);
  return outcome;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Input input(data, size);
  for (const auto stream : {openAI, anthropic}) {
    const Outcome whole = stream({std::string(input.text)});
    fuzz::expect(whole.ends == 1, "a stream ends once");
    fuzz::expect(stream(input.inTwo()) == whole, "a cut changes nothing");
    fuzz::expect(stream(input.inBytes()) == whole, "a drip of bytes changes nothing");
  }
  return 0;
}
