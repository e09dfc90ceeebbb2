#pragma once

#include <QStackedLayout>
#include <QWidget>
#include <array>

#include "panels/review/ReviewPanelVM.h"
#include "panels/review/ReviewViewState.h"
#include "panels/review/views/DiffViews.h"
#include "panels/review/views/ErrorView.h"
#include "panels/review/views/TypewriterText.h"
#include "panels/views/LoadingView.h"
#include "platform/Pasteboard.h"
#include "widgets/DropDown.h"
#include "widgets/SegmentedControl.h"

namespace quillmark {

/// The content of the review panel: the modes, the result in one of them, and the bar. Tab goes through the modes where
/// there is a choice; Shift+Tab and the arrows then go through the controls.
class ReviewView : public QWidget {
 public:
  ReviewView(ReviewPanelVM& session, ReviewViewState& state, Pasteboard& pasteboard, QWidget* parent = nullptr);

  PanelButton& applyButton() { return apply_; }
  DropDown& modelMenu() { return model_; }
  TypewriterText& result() { return result_; }

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void makeBar(QWidget& bar);
  void showContent();
  void showMenus();
  void showState();
  /// Lets the panel be as large as its content asks.
  void fit();
  void measure();
  bool moveInBar(bool forward);

  ReviewPanelVM& session_;
  ReviewViewState& state_;
  QWidget head_;
  SegmentedControl picker_;
  QWidget content_;
  QStackedLayout pages_;
  TypewriterText result_;
  LineByLineDiffView lines_;
  WordLevelDiffView words_;
  ErrorView error_;
  LoadingText waiting_;
  QWidget bar_;
  DropDown provider_;
  DropDown model_;
  PanelButton reload_;
  LoadingView reloading_;
  PanelButton discard_;
  PanelButton apply_{PanelButton::Look::filled};
  PanelButton copy_;
  std::array<Connection, 8> changes_;
};

}  // namespace quillmark
