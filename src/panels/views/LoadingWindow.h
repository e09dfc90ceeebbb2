#pragma once

#include "panels/views/LoadingView.h"
#include "platform/desktop/QtPanelWindow.h"

namespace quillmark {

/// The loading indicator's window; made once, shown and closed again and again.
class LoadingWindow : public QtPanelWindow {
 public:
  explicit LoadingWindow(WindowHints& hints) : QtPanelWindow(hints, Kind::indicator, LoadingView::cornerRadius) {
    setWindowTitle(QStringLiteral("Quillmark"));
    setFixedSize(view_.size());
  }

  const LoadingView& view() const { return view_; }

 private:
  LoadingView view_{this};
};

}  // namespace quillmark
