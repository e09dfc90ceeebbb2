#include "panels/menu/KeyPressModifier.h"

#include <algorithm>

namespace quillmark {

KeyPressModifier::KeyPressModifier(std::vector<int> keys, std::function<void(int)> action,
                                   std::function<std::size_t()> itemCount, Observable<Index>* selectedIndex)
    : keys_(std::move(keys)),
      action_(std::move(action)),
      itemCount_(std::move(itemCount)),
      selectedIndex_(selectedIndex) {
  if (selectedIndex_ != nullptr) {
    allKeys_.assign(std::begin(whiteListedKeys), std::end(whiteListedKeys));
  }
  allKeys_.insert(allKeys_.end(), keys_.begin(), keys_.end());
}

void KeyPressModifier::keyDown(int keyCode) {
  if (std::ranges::find(allKeys_, keyCode) == allKeys_.end()) {
    return;
  }
  if (std::ranges::find(whiteListedKeys, keyCode) != std::end(whiteListedKeys)) {
    navigate(keyCode);
  } else {
    action_(keyCode);
  }
}

void KeyPressModifier::navigate(int keyCode) {
  const std::size_t count = itemCount_ ? itemCount_() : 0;
  if (count < 1 || selectedIndex_ == nullptr) {
    return;
  }
  const Index index = selectedIndex_->get();
  if (!index) {
    selectedIndex_->set(0);
  } else if (keyCode == upArrow) {
    selectedIndex_->set(*index < 1 ? count - 1 : *index - 1);
  } else {
    selectedIndex_->set(*index + 1 < count ? *index + 1 : 0);
  }
}

}  // namespace quillmark
