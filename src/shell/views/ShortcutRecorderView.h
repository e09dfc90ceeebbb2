#pragma once

#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <string>

#include "execution/ShortcutRecorder.h"

namespace quillmark {

/// The control of a ShortcutRecorder: a button that shows the combination and records a new one, and a smaller one that
/// clears it. Click, Space or Return starts recording; losing the focus stops it.
class ShortcutRecorderView : public QWidget {
 public:
  ShortcutRecorderView(ShortcutRecorder::Collaborators collaborators, std::string name, QWidget* parent = nullptr);

 private:
  /// Receives the keys while the recorder is recording.
  class Field : public QPushButton {
   public:
    Field(ShortcutRecorder& recorder, QWidget* parent);

   protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

   private:
    ShortcutRecorder& recorder_;
  };

  void refresh();

  ShortcutRecorder recorder_;
  Field field_{recorder_, this};
  QToolButton clear_{this};
  Connection changes_;
};

}  // namespace quillmark
