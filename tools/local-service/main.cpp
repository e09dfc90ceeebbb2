#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <thread>

#include <CLI/CLI.hpp>
#include <pthread.h>

#include "local-service/Service.h"

namespace {

using namespace quillmark;

int serve(service::Service::Settings settings) {
  // Blocked before any thread starts, so that only the waiting thread receives them.
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGTERM);
  sigaddset(&ending, SIGINT);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  service::Service service(std::move(settings));
  std::thread server([&service] { service.run(); });
  std::printf("listening on http://127.0.0.1:%d\n", service.port());
  std::fflush(stdout);
  int received = 0;
  sigwait(&ending, &received);
  service.stop();
  server.join();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program{
      "Serves what Quillmark asks of its hosted service, on this machine alone. Without an upstream it corrects "
      "spelling and does other plain text work; with one it passes requests on to a language model.",
      "quillmark-local-service"};
  int port = 3030;
  int delay = 0;
  std::string version = QUILLMARK_VERSION;
  service::Upstream::Settings upstream;
  std::string keyVariable;
  program.add_option("--port", port, "Port on 127.0.0.1; 0 takes a free one and prints it")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  program.add_option("--delay-ms", delay, "Wait before each answer, to see how waiting looks")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  program.add_option("--newest-version", version, "Version offered to those who look for updates")
      ->capture_default_str();
  auto* url = program.add_option("--upstream", upstream.baseUrl,
                                 "Base URL of a server with /chat/completions, such as http://127.0.0.1:11434/v1");
  program.add_option("--upstream-model", upstream.model, "Model to ask for, whatever the request says")->needs(url);
  program.add_option("--upstream-key-env", keyVariable, "Environment variable that holds the upstream's key")
      ->needs(url);
  CLI11_PARSE(program, argc, argv);

  try {
    service::Service::Settings settings{port, std::chrono::milliseconds(delay), version, std::nullopt};
    if (!upstream.baseUrl.empty()) {
      if (!keyVariable.empty()) {
        const char* key = std::getenv(keyVariable.c_str());
        if (key == nullptr) {
          throw std::runtime_error("the environment variable " + keyVariable + " is not set");
        }
        upstream.key = key;
      }
      settings.upstream = upstream;
    }
    return serve(std::move(settings));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quillmark-local-service: %s\n", error.what());
    return 1;
  }
}
