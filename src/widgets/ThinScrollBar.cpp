#include "widgets/ThinScrollBar.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <algorithm>

#include "widgets/Look.h"

namespace quillmark {

namespace {

constexpr int shortest = 32;

/// The geometry of the bar's parts, for painting and hit testing.
class Geometry : public QProxyStyle {
 public:
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override {
    const auto* const slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || !slider) {
      return QProxyStyle::subControlRect(control, option, part, widget);
    }
    const QRect all = slider->rect;
    const qint64 range = qint64(slider->maximum) - slider->minimum;
    const int length = range == 0
                           ? all.height()
                           : std::clamp(int(qint64(all.height()) * slider->pageStep / (range + slider->pageStep)),
                                        std::min(shortest, all.height()), all.height());
    const int start = sliderPositionFromValue(slider->minimum, slider->maximum, slider->sliderPosition,
                                              all.height() - length, slider->upsideDown);
    switch (part) {
      case SC_ScrollBarSlider:
        return {all.left(), all.top() + start, all.width(), length};
      case SC_ScrollBarSubPage:
        return {all.left(), all.top(), all.width(), start};
      case SC_ScrollBarAddPage:
        return {all.left(), all.top() + start + length, all.width(), all.height() - start - length};
      case SC_ScrollBarGroove:
        return all;
      default:
        return {};
    }
  }
};

}  // namespace

ThinScrollBar::ThinScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
  auto* const geometry = new Geometry;
  geometry->setParent(this);
  setStyle(geometry);
  setAttribute(Qt::WA_Hover);
}

QSize ThinScrollBar::sizeHint() const { return {thickness, 2 * shortest}; }

void ThinScrollBar::paintEvent(QPaintEvent*) {
  if (maximum() == minimum()) {
    return;
  }
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect slider = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(
      look::withOpacity(palette().color(QPalette::WindowText), isSliderDown() || underMouse() ? 0.45 : 0.25));
  const int inset = 2;
  const double radius = (thickness - 2 * inset) / 2.0;
  painter.drawRoundedRect(QRectF(slider).adjusted(inset, inset, -inset, -inset), radius, radius);
}

}  // namespace quillmark
