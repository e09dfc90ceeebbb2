#pragma once

#include <cstddef>
#include <filesystem>

namespace quillmark::bench {

struct StoreSize {
  std::size_t commands = 0;
  std::size_t languages = 0;
  std::size_t tones = 0;
};

/// A store after some years of use, and one far larger than any user's.
inline constexpr StoreSize ordinaryStore{200, 0, 0};
inline constexpr StoreSize largeStore{2000, 200, 50};

/// Adds to the stores in this data directory until they have at least this many entries.
void fillStore(const std::filesystem::path& data, const StoreSize& size);

}  // namespace quillmark::bench
