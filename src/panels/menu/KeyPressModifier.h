#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "base/Signal.h"

namespace quillmark {

/// Observes the keys pressed in a panel: the arrows move a selection, if there is one, and the keys that the owner
/// wants go to its action. The focused view still gets every key. Main thread only.
class KeyPressModifier {
 public:
  // Positions of keys, as virtual key codes.
  static constexpr int returnKey = 36;
  static constexpr int tabKey = 48;
  static constexpr int downArrow = 125;
  static constexpr int upArrow = 126;
  static constexpr int whiteListedKeys[] = {downArrow, upArrow};  ///< those that navigate

  using Index = std::optional<std::size_t>;

  /// `selectedIndex` may be null: then there is no selection and the arrows are ignored.
  KeyPressModifier(std::vector<int> keys, std::function<void(int keyCode)> action,
                   std::function<std::size_t()> itemCount = {}, Observable<Index>* selectedIndex = nullptr);

  void keyDown(int keyCode);

  const std::vector<int>& allKeys() const { return allKeys_; }

 private:
  void navigate(int keyCode);

  std::vector<int> keys_;
  std::vector<int> allKeys_;
  std::function<void(int)> action_;
  std::function<std::size_t()> itemCount_;
  Observable<Index>* selectedIndex_;
};

}  // namespace quillmark
