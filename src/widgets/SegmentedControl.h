#pragma once

#include <QWidget>
#include <functional>
#include <vector>

namespace quillmark {

class Button;

/// A row of titles, one of them chosen, by the pointer or the arrow keys.
class SegmentedControl : public QWidget {
 public:
  explicit SegmentedControl(const QStringList& titles, QWidget* parent = nullptr);

  void choose(int index);
  int chosen() const { return chosen_; }
  std::function<void(int)> onChoice;  ///< the user has chosen another one

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::vector<Button*> segments_;
  int chosen_ = -1;
};

}  // namespace quillmark
