#include "base/Uuid.h"

#include <cstring>

#include <uuid/uuid.h>

namespace quillmark {

Uuid Uuid::random() {
  Uuid result;
  uuid_generate_random(result.bytes_.data());
  return result;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  Uuid result;
  if (uuid_parse_range(text.data(), text.data() + text.size(), result.bytes_.data()) != 0) {
    return std::nullopt;
  }
  return result;
}

const Uuid& Uuid::processDefault() {
  static const Uuid value = random();
  return value;
}

std::string Uuid::toString() const {
  std::array<char, UUID_STR_LEN> text{};
  uuid_unparse_upper(bytes_.data(), text.data());
  return text.data();
}

}  // namespace quillmark

std::size_t std::hash<quillmark::Uuid>::operator()(const quillmark::Uuid& uuid) const noexcept {
  std::size_t value = 0;
  std::memcpy(&value, uuid.bytes_.data(), sizeof value);
  return value;
}
