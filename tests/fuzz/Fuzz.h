#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::fuzz {

/// What must hold for every input.
inline void expect(bool condition, const char* rule) {
  if (!condition) {
    std::fprintf(stderr, "broken rule: %s\n", rule);
    std::abort();
  }
}

/// An input: its first byte is a number for the target, the rest is the text.
struct Input {
  Input(const std::uint8_t* data, std::size_t size)
      : choice(size == 0 ? 0 : data[0]),
        text(reinterpret_cast<const char*>(data) + (size == 0 ? 0 : 1), size == 0 ? 0 : size - 1) {}

  /// The text in two blocks, cut where the number says.
  std::vector<std::string> inTwo() const {
    const std::size_t cut = text.empty() ? 0 : choice % text.size();
    return {std::string(text.substr(0, cut)), std::string(text.substr(cut))};
  }
  std::vector<std::string> inBytes() const {
    std::vector<std::string> bytes;
    for (const char byte : text) {
      bytes.emplace_back(1, byte);
    }
    return bytes;
  }

  std::uint8_t choice;
  std::string_view text;
};

}  // namespace quillmark::fuzz
