#include "platform/StoredRecords.h"

#include "base/Log.h"

namespace quillmark {

void setAside(UserDefaults& defaults, const std::string& key, const std::string& problem) {
  const auto value = defaults.value(key);
  if (!value) {
    return;
  }
  int number = 1;
  std::string place;
  for (;; ++number) {
    place = key + ".undecodable-" + std::to_string(number);
    const auto taken = defaults.value(place);
    if (taken == value) {
      return;  // already kept from an earlier start
    }
    if (!taken) {
      break;
    }
  }
  defaults.set(place, *value);
  log("The value under " + key + " does not decode (" + problem + "); it is kept under " + place);
}

}  // namespace quillmark
