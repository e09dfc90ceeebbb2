#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "panels/menu/views/CommandMenuView.h"
#include "panels/review/views/ReviewView.h"
#include "platform/desktop/QtMainQueue.h"
#include "platform/desktop/QtPanelWindow.h"
#include "platform/desktop/x11/X11WindowHints.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/QuillmarkApp.h"
#include "support/Trace.h"
#include "widgets/Look.h"

namespace quillmark::bench {

/// Reports when something was drawn.
class DrawingApplication : public QApplication {
 public:
  using QApplication::QApplication;

  std::size_t events = 0;              ///< so far
  std::size_t paintings = 0;           ///< of widgets
  std::function<void()> frameIsDrawn;  ///< a window has painted all pending updates

  bool notify(QObject* receiver, QEvent* event) override;
};

/// Both panels as in the program, on the toolkit's main queue; the rest of the desktop is simulated.
class Stage {
 public:
  explicit Stage(DrawingApplication& application);

  QuillmarkApp& app() { return app_; }
  CommandMenuView& menu() { return menu_; }

  void openMenu();
  void closeMenu();
  /// Opens a review whose answer is streaming.
  void openReview(ReviewViewMode mode);
  /// Delivers a piece of that answer. Any thread.
  void receive(std::string_view chunk) { answering_->bytes(std::string(chunk)); }
  void closeReview();
  /// Waits for the same moment in the pulse of the answer: translucent text takes longer to draw.
  void pulse();
  /// How many lines of the answer are laid out.
  std::size_t linesOfAnswer() const { return answer_->blockCount(); }

  /// Milliseconds from the beginning of `work` until the X server has drawn what it changes. Throws std::runtime_error
  /// if nothing changes.
  double drawingTimeOf(const std::function<void()>& work);
  /// Runs the event loop until it is idle.
  void settle();

 private:
  void sendAllPostedEvents();
  void waitUntil(const std::function<bool()>& condition);
  void waitUntilShown(const QWidget& window);
  void waitUntilNothingIsShown();

  DrawingApplication& application_;
  SimulatedDesktop desktop_;
  QtMainQueue queue_;
  X11Connection connection_;
  std::unique_ptr<WindowHints> hints_{makeX11WindowHints(connection_)};
  QtPanelWindow reviewWindow_{*hints_, QtPanelWindow::Kind::panel, look::windowRadius};
  QtPanelWindow menuWindow_{*hints_, QtPanelWindow::Kind::panel, look::windowRadius};
  QuillmarkApp app_;
  ReviewView review_{app_.reviewPanel(), app_.reviewViewState(), desktop_.pasteboard};
  CommandMenuView menu_{app_.commandPanel()};
  const TextColumn* answer_ = nullptr;
  const SimulatedHttpSession::Exchange* answering_ = nullptr;
  QElapsedTimer streaming_;
};

}  // namespace quillmark::bench
