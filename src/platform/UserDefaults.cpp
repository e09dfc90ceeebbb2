#include "platform/UserDefaults.h"

#include <algorithm>
#include <utility>

#include "base/Log.h"

namespace quillmark {

bool UserDefaults::change(std::string_view key, std::optional<DefaultsValue> value, Durability durability) {
  const std::string name(key);
  if (transaction_ && transaction_->refused) {
    return false;
  }
  const auto written = write(name, value, durability);
  if (!transaction_) {
    if (!written) {
      refuse(name, written.error(), durability);
    } else if (*written) {
      changed.emit(name);
    }
    return written.has_value();
  }
  if (!written) {
    transaction_->refused = true;
    transaction_->reason = written.error();
  } else if (*written && std::ranges::find(transaction_->touched, name) == transaction_->touched.end()) {
    transaction_->touched.push_back(name);
  }
  return written.has_value();
}

bool UserDefaults::transaction(const std::function<bool()>& edit, Durability durability) {
  if (transaction_) {
    return edit() && !transaction_->refused;
  }
  if (const auto begun = begin(durability); !begun) {
    refuse("a change", begun.error(), durability);
    return false;
  }
  transaction_.emplace();
  bool stored = false;
  try {
    stored = edit() && !transaction_->refused;
  } catch (...) {
    rollBack();
    transaction_.reset();
    throw;
  }
  if (stored) {
    if (const auto committed = commit(durability); !committed) {
      stored = false;
      transaction_->refused = true;
      transaction_->reason = committed.error();
    }
  }
  if (!stored) {
    rollBack();
  }
  const Transaction ended = *std::exchange(transaction_, std::nullopt);
  if (stored) {
    for (const auto& key : ended.touched) {
      changed.emit(key);
    }
  } else if (ended.refused) {
    refuse(ended.touched.empty() ? "a change" : ended.touched.front(), ended.reason, durability);
  }
  return stored;
}

void UserDefaults::refuse(const std::string& what, const std::string& reason, Durability durability) {
  log("Could not store " + what + ": " + reason);
  if (durability == Durability::lossOfPower) {
    refused.emit(reason);
  }
}

}  // namespace quillmark
