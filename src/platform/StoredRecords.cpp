#include "platform/StoredRecords.h"

#include "base/Log.h"

namespace quillmark {

void StoredValue::setAside(const std::string& problem) {
  pending_ = problem;
  if (copyAside()) {
    pending_.reset();
  }
}

bool StoredValue::replace(DefaultsValue value, Durability durability) {
  if (pending_ && !copyAside()) {
    log("The value under " + key_ + " is not replaced, since it could not be kept");
    return false;
  }
  pending_.reset();
  return defaults_.set(key_, std::move(value), durability);
}

bool StoredValue::copyAside() {
  const auto value = defaults_.value(key_);
  if (!value) {
    return true;
  }
  int number = 1;
  std::string place;
  for (;; ++number) {
    place = key_ + ".undecodable-" + std::to_string(number);
    const auto taken = defaults_.value(place);
    if (taken == value) {
      return true;  // already kept from an earlier start
    }
    if (!taken) {
      break;
    }
  }
  if (!defaults_.set(place, *value)) {
    return false;
  }
  log("The value under " + key_ + " does not decode (" + *pending_ + "); it is kept under " + place);
  return true;
}

}  // namespace quillmark
