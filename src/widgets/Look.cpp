#include "widgets/Look.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <QPen>
#include <QStyle>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace quillmark::look {

namespace {

struct Colours {
  QColor ground, card, hairline, text, secondary, accent, added, removed, changed;
};

const Colours& coloursOf(Scheme scheme) {
  static const Colours light{0xFCFCFD, 0xF3F3F5, 0xE1E1E5, 0x1B1B1E, 0x66666D, 0x2B66D9, 0x146C34, 0xB3261E, 0x1D57B8};
  static const Colours dark{0x1F2023, 0x292A2E, 0x3B3C41, 0xF1F1F3, 0xA7A8AF, 0x86AEFF, 0x62C987, 0xF58A83, 0x8DB4FA};
  return scheme == Scheme::dark ? dark : light;
}

const Colours& coloursOf(const QPalette& palette) { return coloursOf(scheme(palette)); }

double luminance(const QColor& colour) {
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// The palette that came with the toolkit, before this program set one of its own.
const QPalette& desktopPalette() {
  static const QPalette palette = QApplication::palette();
  return palette;
}

/// Whether that palette is the desktop's rather than the toolkit's built-in fallback.
bool desktopHasPalette() { return desktopPalette().color(QPalette::Window) != QColor(239, 239, 239); }

}  // namespace

QPalette palette(Scheme scheme, const std::optional<QColor>& accent) {
  const Colours& colours = coloursOf(scheme);
  const QColor highlight = accent.value_or(colours.accent);
  const QColor black(0x1B1B1E);
  const QColor onHighlight = contrast(Qt::white, highlight) >= contrast(black, highlight) ? QColor(Qt::white) : black;
  QPalette result(colours.text, colours.card, colours.ground, colours.hairline, colours.secondary, colours.text,
                  Qt::white, colours.ground, colours.ground);
  result.setColor(QPalette::AlternateBase, colours.card);
  result.setColor(QPalette::Mid, colours.hairline);
  result.setColor(QPalette::PlaceholderText, colours.secondary);
  result.setColor(QPalette::Highlight, highlight);
  result.setColor(QPalette::HighlightedText, onHighlight);
  result.setColor(QPalette::Link, colours.changed);
  result.setColor(QPalette::ToolTipBase, colours.card);
  result.setColor(QPalette::ToolTipText, colours.text);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    QColor faint = colours.text;
    faint.setAlphaF(0.4F);
    result.setColor(QPalette::Disabled, role, faint);
  }
  result.setColor(QPalette::Disabled, QPalette::PlaceholderText, withOpacity(colours.secondary, 0.5));
  return result;
}

void apply(const DesktopAppearance::Wishes& wishes) {
  const QPalette& desktop = desktopPalette();
  const Scheme wanted = wishes.scheme.value_or(desktopHasPalette() ? scheme(desktop) : Scheme::light);
  auto accent = wishes.accent;
  if (!accent && desktopHasPalette()) {
    accent = desktop.color(QPalette::Highlight);
  }
  // An accent that can't be distinguished from its background is ignored.
  if (accent && contrast(*accent, coloursOf(wanted).ground) < 2) {
    accent.reset();
  }
  if (QApplication::style()->name() != QLatin1String("fusion")) {
    QApplication::setStyle(QStringLiteral("fusion"));
  }
  QApplication::setPalette(palette(wanted, accent));
}

Scheme scheme(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness() ? Scheme::dark
                                                                                                       : Scheme::light;
}

QColor secondary(const QPalette& palette) { return palette.color(QPalette::PlaceholderText); }
QColor hairline(const QPalette& palette) { return palette.color(QPalette::Mid); }
QColor card(const QPalette& palette) { return palette.color(QPalette::AlternateBase); }
QColor added(const QPalette& palette) { return coloursOf(palette).added; }
QColor removed(const QPalette& palette) { return coloursOf(palette).removed; }
QColor changed(const QPalette& palette) { return coloursOf(palette).changed; }

QColor withOpacity(QColor colour, double opacity) {
  colour.setAlphaF(static_cast<float>(opacity));
  return colour;
}

double contrast(const QColor& a, const QColor& b) {
  const double first = luminance(a);
  const double second = luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QFont font(double size, QFont::Weight weight) {
  static constexpr double ordinary = 10.0 * 96 / 72;  // a desktop font of 10 points
  QFont result = QApplication::font();
  const double scale = std::max(1.0, QFontInfo(result).pixelSize() / ordinary);
  result.setPixelSize(static_cast<int>(std::lround(size * scale)));
  result.setWeight(weight);
  return result;
}

QFont monospaced(double size) {
  QFont result = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  result.setPixelSize(font(size).pixelSize());
  return result;
}

bool animates(const QWidget& widget) {
  return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

int leading(Qt::LayoutDirection direction, Qt::Alignment vertical) {
  return int(Qt::AlignAbsolute | vertical | (direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft));
}

void drawHairline(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  const double thickness = 1 / painter.device()->devicePixelRatioF();
  painter.fillRect(QRectF(rect.left(), rect.top(), rect.width(), thickness), hairline(palette));
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& colour) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawRoundedRect(rect, radius, radius);
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette) {
  constexpr double width = 2;
  constexpr double away = 2;
  const double grown = away + width / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette.color(QPalette::Highlight), width));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(-grown, -grown, grown, grown), radius + grown, radius + grown);
  painter.restore();
}

}  // namespace quillmark::look
