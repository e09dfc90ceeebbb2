#include "platform/StoredValue.h"

#include "base/Log.h"

namespace quillmark {

bool StoredValue::setAside(const std::string& problem) {
  const auto value = defaults_.value(key_);
  if (!value) {
    return true;
  }
  for (int number = 1;; ++number) {
    const std::string place = key_ + ".undecodable-" + std::to_string(number);
    const auto taken = defaults_.value(place);
    if (taken == value) {
      return true;  // already kept by an earlier start
    }
    if (taken) {
      continue;
    }
    const bool kept = defaults_.set(place, *value);
    log(kept ? "The value under " + key_ + " does not decode (" + problem + "); it is kept under " + place
             : "The value under " + key_ + " does not decode and could not be kept, so it is not replaced");
    return kept;
  }
}

}  // namespace quillmark
