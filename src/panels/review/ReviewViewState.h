#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "panels/PanelSettings.h"
#include "panels/review/BackgroundComparison.h"
#include "panels/review/ReviewPanelVM.h"
#include "panels/review/TextComparison.h"

namespace quillmark {

/// The views of a result, in the order in which they are offered.
enum class ReviewViewMode { text, styled, lineByLine, wordByWord };

/// In the interface language.
std::string title(ReviewViewMode mode);

/// The content above the review panel's bar.
enum class ReviewContent {
  text,        ///< the result as it is
  styled,      ///< the result with its Markdown drawn
  lineByLine,  ///< ReviewViewState::lines()
  wordByWord,  ///< ReviewViewState::words()
  error,       ///< the session's error message
  loading,     ///< an answer is being awaited
};

/// What the review panel's view shows and how large it wants to be; it lives as long as the session object, through all
/// its runs. Main thread only.
class ReviewViewState {
 public:
  static constexpr Size fixedSize = ReviewPanelVM::startSize;
  static constexpr double startHeight = 250;  ///< with dynamic sizing, before anything is measured
  static constexpr double minTextHeight = 80;
  static constexpr double maxTextHeight = 700;
  static constexpr double heightMargin = 20;
  static constexpr double textAllowance = 10;  ///< the part of the minimum height that is not text
  static constexpr double recenterThreshold = 50;
  static constexpr Duration recenterDelay = std::chrono::milliseconds(100);
  static constexpr double maxHeightShare = 0.8;  ///< of the visible height of the main screen

  ReviewViewState(MainQueue& queue, BackgroundQueue& background, ReviewPanelVM& session, PanelSettings& settings);

  const BackgroundComparison<LineDiff>& lines() const { return lines_; }
  const BackgroundComparison<DiffElement>& words() const { return words_; }

  ReviewViewMode viewMode() const { return shown_.mode; }
  void setViewMode(ReviewViewMode mode);
  /// The next mode, if there is a choice; for the Tab key.
  void cycle();
  /// Whether the user has a choice of modes. Without one the text is shown, whatever the mode.
  bool offersComparison() const { return shown_.offersComparison; }
  ReviewContent content() const { return shown_.content; }
  /// One of the three above has changed. While the panel is open, the comparison it shows has been requested by then.
  Signal<> contentChanged;

  double minWidth() const { return minSize_.width; }
  double minHeight() const { return minSize_.height; }
  /// The minimum size of the panel's content: the above, or a fixed size.
  Size minimumSize() const { return sizing_ == ReviewWindowSizing::fixed ? fixedSize : minSize_; }
  std::optional<double> maxHeight() const;
  /// The preferred size of the panel's content, never smaller than its current size: the minimum and, with dynamic
  /// sizing, high enough for a text with `around` above and below it, up to the maximum.
  Size panelSize(double around) const;
  Size lastRecenterSize() const { return lastRecenterSize_; }
  /// Call after each layout with the size of the drawn text; takes effect in a later block of the queue.
  void measured(Size sizeOfText);
  /// minWidth(), minHeight() or minimumSize() has changed.
  Signal<> sizeChanged;

 private:
  struct Shown {
    ReviewViewMode mode = ReviewViewMode::text;
    bool offersComparison = false;
    ReviewContent content = ReviewContent::text;
    friend bool operator==(const Shown&, const Shown&) = default;
  };

  void refresh(ReviewViewMode mode);
  bool showsText() const { return content() == ReviewContent::text || content() == ReviewContent::styled; }
  ReviewContent contentOf(ReviewViewMode mode) const;
  void fit(Size sizeOfText);
  void startSizing();
  void setMinSize(Size size);

  BackgroundComparison<LineDiff> lines_;
  BackgroundComparison<DiffElement> words_;
  MainQueue& queue_;
  ReviewPanelVM& session_;
  bool comparisonEnabled_;
  ReviewWindowSizing sizing_;
  Shown shown_;
  Size minSize_{fixedSize.width, startHeight};
  Size lastRecenterSize_;
  Connections connections_;
  Lifetime lifetime_;
};

}  // namespace quillmark
