#pragma once

#include <QStackedLayout>
#include <QWidget>

#include "panels/review/ReviewPanelVM.h"
#include "panels/review/ReviewViewState.h"
#include "panels/review/views/DiffViews.h"
#include "panels/review/views/ErrorView.h"
#include "panels/review/views/LoadingText.h"
#include "panels/review/views/TypewriterText.h"
#include "panels/views/LoadingView.h"
#include "platform/Pasteboard.h"
#include "widgets/Button.h"
#include "widgets/DropDown.h"
#include "widgets/SegmentedControl.h"

namespace quillmark {

/// The content of the review panel: the modes, the result in one of them, and the bar. Tab cycles through the modes
/// where there is a choice; Shift+Tab and the arrows then move between the controls.
class ReviewView : public QWidget {
 public:
  ReviewView(ReviewPanelVM& session, ReviewViewState& state, Pasteboard& pasteboard, QWidget* parent = nullptr);

  Button& applyButton() { return apply_; }
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
  std::vector<DropDown::Item> providerItems();
  std::vector<DropDown::Item> modelItems();
  /// Sizes the panel to its content.
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
  Button reload_;
  LoadingView reloading_;
  Button discard_;
  Button apply_{Button::Look::filled};
  Button copy_;
  Connections connections_;
};

}  // namespace quillmark
