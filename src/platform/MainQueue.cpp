#include "platform/MainQueue.h"

#include <array>
#include <ctime>
#include <string>

namespace quillmark {

std::string describe(Date date) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 40> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S +0000", &parts);
  return text.data();
}

}  // namespace quillmark
