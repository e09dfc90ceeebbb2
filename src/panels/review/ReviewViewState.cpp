#include "panels/review/ReviewViewState.h"

#include <algorithm>
#include <cmath>

#include "base/EnumTable.h"
#include "base/Localization.h"

namespace quillmark {
namespace {

struct ModeTitle {
  ReviewViewMode key;
  const char* title;
};
constexpr EnumTable<ModeTitle> modeTitles{{
    {ReviewViewMode::text, trLater("Text")},
    {ReviewViewMode::styled, trLater("Styled")},
    {ReviewViewMode::lineByLine, trLater("Line by Line")},
    {ReviewViewMode::wordByWord, trLater("Word by Word")},
}};

}  // namespace

std::string title(ReviewViewMode mode) { return tr(modeTitles[mode].title); }

ReviewViewState::ReviewViewState(MainQueue& queue, BackgroundQueue& background, ReviewPanelVM& session,
                                 PanelSettings& settings)
    : lines_(background, queue, calculateLineDiff),
      words_(background, queue, calculateWordDiff),
      queue_(queue),
      session_(session),
      comparisonEnabled_(settings.comparisonEnabled.get()),
      sizing_(settings.windowSizing.get()) {
  const auto refreshes = [this](const auto&) { refresh(viewMode()); };
  connections_ += session_.text().changed.connect(refreshes);
  connections_ += session_.loading().observe(refreshes);
  connections_ += session_.isStreaming().observe(refreshes);
  connections_ += session_.hasError().observe(refreshes);
  connections_ += session_.initialText().observe([this](const std::string&) {
    startSizing();
    refresh(viewMode());
  });
  // The next session may be about the same text.
  connections_ += session_.isReviewOpen().observe([this](bool open) {
    if (!open) {
      startSizing();
    }
  });
  connections_ += settings.comparisonEnabled.observe([this](bool enabled) {
    comparisonEnabled_ = enabled;
    refresh(viewMode());
  });
  connections_ += settings.windowSizing.observe([this](ReviewWindowSizing sizing) {
    sizing_ = sizing;
    sizeChanged.emit();
  });
  refresh(viewMode());
}

void ReviewViewState::setViewMode(ReviewViewMode mode) { refresh(mode); }

void ReviewViewState::cycle() {
  if (offersComparison()) {
    refresh(static_cast<ReviewViewMode>((static_cast<std::size_t>(viewMode()) + 1) % enumeratorCount<ReviewViewMode>));
  }
}

void ReviewViewState::refresh(ReviewViewMode mode) {
  const bool comparison = comparisonEnabled_ && !session_.initialText()->empty();
  const Shown now{mode, comparison, contentOf(comparison ? mode : ReviewViewMode::text)};
  // What arrives after the panel has closed is never seen: a run follows each opening.
  if (session_.isReviewOpen().get()) {
    if (now.content == ReviewContent::lineByLine) {
      lines_.compare(session_.initialText(), session_.text().get());
    } else if (now.content == ReviewContent::wordByWord) {
      words_.compare(session_.initialText(), session_.text().get());
    }
  }
  if (now != shown_) {
    shown_ = now;
    contentChanged.emit();
  }
}

ReviewContent ReviewViewState::contentOf(ReviewViewMode mode) const {
  if (session_.hasError().get()) {
    return ReviewContent::error;
  }
  const bool waits = session_.isStreaming().get() || session_.loading().get();
  switch (mode) {
    case ReviewViewMode::text:
      return waits && session_.text().empty() ? ReviewContent::loading : ReviewContent::text;
    case ReviewViewMode::styled:
      return waits && session_.text().empty() ? ReviewContent::loading : ReviewContent::styled;
    case ReviewViewMode::lineByLine:
      return waits ? ReviewContent::loading : ReviewContent::lineByLine;
    case ReviewViewMode::wordByWord:
      return waits ? ReviewContent::loading : ReviewContent::wordByWord;
  }
  return ReviewContent::text;
}

std::optional<double> ReviewViewState::maxHeight() const {
  const auto visible = session_.panel().mainVisibleFrame();
  return visible ? std::optional(maxHeightShare * visible->size.height) : std::nullopt;
}

Size ReviewViewState::panelSize(double around) const {
  const Size least = minimumSize();
  double height = least.height;
  if (showsText() && sizing_ == ReviewWindowSizing::dynamic) {
    height = std::max(height, least.height - textAllowance + around);
  }
  const Size present = session_.panel().contentSize();
  return {std::max(present.width, least.width),
          std::max(present.height, std::min(height, maxHeight().value_or(height)))};
}

void ReviewViewState::measured(Size sizeOfText) {
  queue_.async(lifetime_.guard([this, sizeOfText] { fit(sizeOfText); }));
}

void ReviewViewState::fit(Size sizeOfText) {
  if (sizing_ == ReviewWindowSizing::fixed) {
    return;
  }
  const Size size{std::max(sizeOfText.width, fixedSize.width),
                  std::clamp(sizeOfText.height, minTextHeight, maxTextHeight) + heightMargin};
  setMinSize(size);
  if (std::abs(size.height - lastRecenterSize_.height) > recenterThreshold ||
      std::abs(size.width - lastRecenterSize_.width) > recenterThreshold) {
    lastRecenterSize_ = size;
    queue_.after(recenterDelay, lifetime_.guard([this] { session_.panel().placeAgain(); }));
  }
}

void ReviewViewState::startSizing() {
  if (sizing_ == ReviewWindowSizing::dynamic) {
    setMinSize({fixedSize.width, startHeight});
  }
}

void ReviewViewState::setMinSize(Size size) {
  if (size != minSize_) {
    minSize_ = size;
    sizeChanged.emit();
  }
}

}  // namespace quillmark
