#include "platform/UserDefaults.h"

#include <algorithm>
#include <utility>

#include "base/Log.h"

namespace quillmark {

bool UserDefaults::change(std::string_view key, std::optional<DefaultsValue> value, Durability durability) {
  const std::string name(key);
  if (transaction_ && transaction_->refusal) {
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
    transaction_->refusal.emplace(name, written.error());
  } else if (*written && std::ranges::find(transaction_->touched, name) == transaction_->touched.end()) {
    transaction_->touched.push_back(name);
  }
  return written.has_value();
}

bool UserDefaults::transaction(const std::function<bool()>& edit, Durability durability,
                               std::function<void()> committed) {
  const bool isInner = transaction_.has_value();
  if (!isInner) {
    if (const auto begun = begin(durability); !begun) {
      refuse("a change", begun.error(), durability);
      return false;
    }
    transaction_ = Transaction{{}, {}, std::nullopt, false};
  }
  try {
    transaction_->dropped = !edit() || transaction_->dropped;
  } catch (...) {
    transaction_->dropped = true;
    if (!isInner) {
      rollBack();
      transaction_.reset();
    }
    throw;
  }
  if (committed) {
    transaction_->committed.push_back(std::move(committed));
  }
  return isInner ? !transaction_->dropped && !transaction_->refusal : endTransaction(durability);
}

bool UserDefaults::endTransaction(Durability durability) {
  bool stored = !transaction_->dropped && !transaction_->refusal;
  if (stored) {
    if (const auto done = commit(durability); !done) {
      stored = false;
      transaction_->refusal.emplace("a change", done.error());
    }
  }
  if (!stored) {
    rollBack();
  }
  const Transaction ended = *std::exchange(transaction_, std::nullopt);
  if (stored) {
    for (const auto& callback : ended.committed) {
      callback();
    }
    for (const auto& key : ended.touched) {
      changed.emit(key);
    }
  } else if (ended.refusal) {
    refuse(ended.refusal->first, ended.refusal->second, durability);
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
