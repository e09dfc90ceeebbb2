#include <memory>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "base/Log.h"
#include "bench/LoopbackListener.h"
#include "bench/Measurements.h"
#include "platform/posix/CurlHttpSession.h"
#include "platform/posix/PosixMainQueue.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "providers/ProviderFactory.h"
#include "support/TestHttpServer.h"
#include "support/Trace.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t eventCount = 100'000;
constexpr std::size_t sampleSize = 1'000;

struct Reader {
  ProviderType type;
  const char* name;
  std::string event;  ///< with the text "word "
};

std::string dataLine(const Json& event) { return "data: " + toText(event) + "\n\n"; }

std::vector<Reader> readers() {
  const Json choices = Json::array({{{"index", 0}, {"delta", {{"content", "word "}}}}});
  return {
      {ProviderType::openAICompatible, "shared line handling", dataLine({{"choices", choices}})},
      {ProviderType::openAI, "OpenAI's client",
       dataLine({{"id", "1"},
                 {"object", "chunk"},
                 {"created", 1},
                 {"model", "m"},
                 {"system_fingerprint", "f"},
                 {"choices", choices}})},
      {ProviderType::anthropic, "Anthropic's client",
       "event: content_block_delta\n" + dataLine({{"type", "content_block_delta"}, {"delta", {{"text", "word "}}}})},
      {ProviderType::quillMark, "plain text", "word "},
  };
}

/// What providers need apart from a network and a main queue.
struct Environment {
  Environment(HttpSession& http, MainQueue& queue, int port)
      : alertHandler(queue, desktop.alerts),
        transport(http, queue, {"quillmark", "id", "1", "1"}, {"Linux", 6, 1, 0}, desktop.locale),
        factory({transport, http, queue, alertHandler, desktop.defaults, appConfig,
                 OpenAIClient::Configuration{.host = "127.0.0.1", .port = port, .scheme = "http"}}) {}

  std::unique_ptr<AIProvider> make(ProviderType type, const std::string& baseURL) const {
    return factory.makeProvider(
        ProviderConfig::make({.providerType = type, .name = "Bench", .baseURL = baseURL, .defaultModel = "m"}));
  }

  SimulatedDesktop desktop;
  AlertHandler alertHandler;
  AppConfig appConfig{desktop.defaults};
  HttpTransport transport;
  ProviderFactory factory;
};

/// Microseconds per event, from its bytes to onChunk, in the order of the stream.
std::vector<double> eventTimes(const Reader& reader) {
  SimulatedQueue queue;
  SimulatedHttpSession http;
  const Environment environment(http, queue, 1);
  std::size_t chunks = 0;
  environment.make(reader.type, "http://server")
      ->streamChat(
          "text", "", std::nullopt, [&](const std::string&) { ++chunks; }, [](const auto&) {});
  const auto& exchange = http.exchanges.back();
  exchange.head(200, "text/event-stream");
  std::vector<double> times;
  times.reserve(eventCount);
  for (std::size_t i = 0; i < eventCount; ++i) {
    const auto before = now();
    exchange.bytes(reader.event);
    queue.settle();
    times.push_back(millisecondsBetween(before, now()) * 1000);
  }
  exchange.end();
  queue.settle();
  if (chunks != eventCount) {
    throw std::runtime_error(std::string(reader.name) + " lost events");
  }
  return times;
}

/// Serves one request: sends the head first, and the piece when the client has long been waiting for it. Returns the
/// time at which the piece was sent.
Moment serveFirstPiece(const LoopbackListener& listener, const std::string& piece) {
  const LoopbackListener::Connection connection(listener);
  connection.send("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n\r\n");
  std::this_thread::sleep_for(5ms);
  const auto moment = now();
  connection.send(piece);
  return moment;
}

/// The time at which a bare socket has read the piece.
Moment readBySocket(int port) {
  const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  constexpr std::string_view request = "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\n\r\n";
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::send(connection, request.data(), request.size(), MSG_NOSIGNAL) <= 0) {
    throw std::runtime_error("no connection");
  }
  std::string received;
  char buffer[65536];
  while (received.find("word") == received.npos) {
    const auto size = ::recv(connection, buffer, sizeof buffer, 0);
    if (size <= 0) {
      throw std::runtime_error("no answer");
    }
    received.append(buffer, static_cast<std::size_t>(size));
  }
  const auto moment = now();
  ::close(connection);
  return moment;
}

/// The time at which a provider has passed the piece to its caller on the main thread.
Moment readByProvider(AIProvider& provider, PosixMainQueue& queue) {
  Moment moment{};
  provider.streamChat(
      "text", "", std::nullopt, [&](const std::string&) { moment = now(); }, [&](const auto&) { queue.stop(); });
  queue.run();
  return moment;
}

std::vector<double> firstPieceTimes(int runs, const LoopbackListener& server, const std::string& piece,
                                    const std::function<Moment()>& read) {
  std::vector<double> times;
  for (int run = 0; run <= runs; ++run) {
    Moment sent{};
    std::thread serving([&] { sent = serveFirstPiece(server, piece); });
    const auto received = read();
    serving.join();
    if (run > 0) {  // the first run starts the network's thread
      times.push_back(millisecondsBetween(sent, received));
    }
  }
  return times;
}

void measureFirstPieces(int runs, Figures& figures) {
  const LoopbackListener server;
  figures.add({"first chunk, a bare socket", "ms",
               firstPieceTimes(runs, server, "data: word\n\n", [&] { return readBySocket(server.port()); }),
               std::nullopt});
  const std::string address = "http://127.0.0.1:" + std::to_string(server.port());
  for (const auto& reader : readers()) {
    if (reader.type == ProviderType::quillMark) {
      continue;  // its address is a setting; the code path is the same
    }
    PosixMainQueue queue;
    auto http = std::make_unique<CurlHttpSession>();
    const Environment environment(*http, queue, server.port());
    const auto provider = environment.make(reader.type, address);
    figures.add({std::string("first chunk, ") + reader.name, "ms",
                 firstPieceTimes(runs, server, reader.event, [&] { return readByProvider(*provider, queue); }),
                 std::nullopt});
    http.reset();  // before the queue is destroyed
  }
}

void measureManyRequests(int runs, Figures& figures) {
  constexpr int count = 50;
  TestHttpServer server;
  server.answerOthers([](const ReceivedRequest&) {
    return Answer::json(200, R"({"model":"m","object":"o","created":1,"choices":[{"index":0,)"
                             R"("message":{"role":"assistant","content":"x"}}]})");
  });
  PosixMainQueue queue;
  auto http = std::make_unique<CurlHttpSession>();
  const Environment environment(*http, queue, 1);
  const auto provider = environment.make(ProviderType::openAICompatible, server.url("/v1"));
  std::vector<double> times;
  for (int run = 0; run <= runs; ++run) {
    const auto before = now();
    int answers = 0;
    for (int i = 0; i < count; ++i) {
      provider->chat("text", "", std::nullopt, [&](const auto& answer) {
        if (!answer) {
          throw std::runtime_error("a request of many failed");
        }
        if (++answers == count) {
          queue.stop();
        }
      });
    }
    queue.run();
    if (run > 0) {
      times.push_back(millisecondsBetween(before, now()));
    }
  }
  figures.add({std::to_string(count) + " requests at once, until the last answer", "ms", times, std::nullopt});
  http.reset();
}

}  // namespace

void measureStreams(int runs, Figures& figures) {
  setLogSink([](std::string_view) {});
  for (const auto& reader : readers()) {
    const auto times = eventTimes(reader);
    const std::string name = std::string("an event of 100,000, ") + reader.name;
    figures.add({name + ", the first 1,000", "us", {times.begin(), times.begin() + sampleSize}, std::nullopt});
    figures.add({name + ", the last 1,000", "us", {times.end() - sampleSize, times.end()}, std::nullopt});
  }
  measureFirstPieces(runs, figures);
  measureManyRequests(runs, figures);
  setLogSink({});
}

}  // namespace quillmark::bench
