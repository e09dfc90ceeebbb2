#pragma once

#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <string>

#include "execution/ShortcutRecorder.h"

namespace quillmark {

/// The control of a ShortcutRecorder: a button that shows the combination and records another one, and a smaller one
/// that clears it. Click, Space or Return begin; leaving the field ends.
class ShortcutRecorderView : public QWidget {
 public:
  ShortcutRecorderView(ShortcutRecorder::Collaborators collaborators, std::string name, QWidget* parent = nullptr);

 private:
  /// Takes the keys while the recorder waits for them.
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
