#include "local-service/Casing.h"

namespace quillmark::service {
namespace {

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }
char upper(char c) { return isLower(c) ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

Casing casingOf(std::string_view word) {
  std::size_t capitals = 0;
  std::size_t letters = 0;
  for (const char c : word) {
    capitals += isUpper(c) ? 1 : 0;
    letters += isUpper(c) || isLower(c) ? 1 : 0;
  }
  if (capitals == 0) {
    return Casing::lower;
  }
  if (capitals == 1 && isUpper(word.front())) {
    return Casing::capitalised;
  }
  return capitals == letters ? Casing::upper : Casing::mixed;
}

std::string inCasing(std::string word, Casing casing) {
  if (casing == Casing::upper) {
    for (char& c : word) {
      c = upper(c);
    }
  } else if (casing == Casing::capitalised) {
    return capitalised(std::move(word));
  }
  return word;
}

std::string capitalised(std::string text) {
  if (!text.empty()) {
    text.front() = upper(text.front());
  }
  return text;
}

}  // namespace quillmark::service
