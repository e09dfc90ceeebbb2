#include <stdexcept>

#include "bench/LoopbackListener.h"
#include "bench/Measurements.h"
#include "support/LiveDesktop.h"
#include "support/TemporaryDirectory.h"
#include "support/Trace.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

/// Returns the time at which the first bytes of the next request arrived, then answers and closes the connection.
Moment serveOne(const LoopbackListener& listener) {
  const LoopbackListener::Connection connection(listener);
  const std::string body =
      R"({"model":"m","object":"o","created":1,"choices":[{"index":0,"message":{"role":"assistant","content":"x"}}]})";
  connection.send("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
                  std::to_string(body.size()) + "\r\n\r\n" + body);
  return connection.requestedAt();
}

}  // namespace

void measureCommandLine(const BuildTree& tree, int runs, Figures& figures) {
  const TemporaryDirectory files;
  const LoopbackListener listener;
  prepareData(files / "data");
  writeFile(files / "input", "teh cat\n");
  Trace trace(files / "trace");
  const std::map<std::string, std::string> environment{{"HOME", files.path()},
                                                       {"QUILLMARK_TRACE", trace.file()},
                                                       {"LANG", "C.UTF-8"},
                                                       {"no_proxy", "127.0.0.1"},
                                                       {"QUILLMARK_LOCAL_PORT", std::to_string(listener.port())}};
  const std::vector<std::string> arguments{tree.commandLine(), "--data-dir", files / "data", "run",
                                           "fix-grammar-spelling"};
  std::vector<double> whole, loading, preparing, sending;
  for (int run = 0; run <= runs; ++run) {
    trace.startAnew();
    const auto before = now();
    Process process(arguments, environment, {files / "input", files / "output", {}});
    const auto arrived = serveOne(listener);
    if (process.exitStatus() != 0) {
      throw std::runtime_error("the command-line program failed: " + readFile(files / "output"));
    }
    const auto started = trace.momentOf(trace::processStarted);
    const auto sent = trace.momentOf(trace::requestSent);
    if (!started || !sent) {
      throw std::runtime_error("no trace of the command-line program");
    }
    if (run > 0) {  // the first run creates the stores and reads the program from the disk
      whole.push_back(millisecondsBetween(before, arrived));
      loading.push_back(millisecondsBetween(before, *started));
      preparing.push_back(millisecondsBetween(*started, *sent));
      sending.push_back(millisecondsBetween(*sent, arrived));
    }
  }
  figures.add({"command line: start -> request on the wire", "ms", whole, 12});
  figures.add({"  start -> main()", "ms", loading, std::nullopt});
  figures.add({"  main() -> request sent", "ms", preparing, std::nullopt});
  figures.add({"  request sent -> on the wire", "ms", sending, std::nullopt});
}

}  // namespace quillmark::bench
