#include "widgets/SegmentedControl.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "widgets/Accessibility.h"
#include "widgets/Button.h"
#include "widgets/Look.h"

namespace quillmark {

SegmentedControl::SegmentedControl(const QStringList& titles, QWidget* parent) : QWidget(parent) {
  setRole(*this, QAccessible::Grouping);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(2, 2, 2, 2);
  row->setSpacing(2);
  for (int i = 0; i < titles.size(); ++i) {
    auto* const segment = new Button(Button::Look::segment, this);
    segment->describe(titles[i], "", {});
    segment->setCheckable(true);
    segment->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QObject::connect(segment, &QPushButton::clicked, this, [this, i] {
      const bool another = i != chosen_;
      choose(i);
      if (another) {
        onChoice(i);
      }
    });
    row->addWidget(segment, segment->sizeHint().width());
    segments_.push_back(segment);
  }
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void SegmentedControl::choose(int index) {
  chosen_ = index;
  for (int i = 0; i < int(segments_.size()); ++i) {
    auto& segment = *segments_[std::size_t(i)];
    segment.setChecked(i == index);
    segment.setLook(i == index ? Button::Look::raised : Button::Look::segment);
    segment.setFocusPolicy(i == index ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

void SegmentedControl::keyPressEvent(QKeyEvent* event) {
  const bool back = event->key() == (layoutDirection() == Qt::RightToLeft ? Qt::Key_Right : Qt::Key_Left);
  if (!back && event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) {
    QWidget::keyPressEvent(event);
    return;
  }
  const int next = chosen_ + (back ? -1 : 1);
  if (next >= 0 && next < int(segments_.size())) {
    segments_[std::size_t(next)]->setFocus();
    choose(next);
    onChoice(next);
  }
}

void SegmentedControl::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  look::fillRounded(painter, rect(), look::fieldRadius, look::card(palette()));
}

}  // namespace quillmark
