#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <optional>

#include "platform/desktop/DesktopAppearance.h"

class QPainter;
class QWidget;

/// Colours, type and measures of everything we draw. Lengths are logical points on a grid of 4.
namespace quillmark::look {

constexpr int windowRadius = 12;
constexpr int fieldRadius = 8;
constexpr int chipRadius = 6;
constexpr int windowPadding = 16;
constexpr int targetHeight = 28;  ///< the minimum height of a pointer target

using Scheme = DesktopAppearance::ColorScheme;

/// The palette for all of it: Window is the background of a window, AlternateBase a card or field, Mid a hairline,
/// PlaceholderText secondary text, Highlight the accent.
QPalette palette(Scheme scheme, const std::optional<QColor>& accent = std::nullopt);

/// Gives the application its style and palette; what the desktop has no preference for comes from the toolkit's initial
/// palette.
void apply(const DesktopAppearance::Wishes& wishes);

Scheme scheme(const QPalette& palette);
QColor secondary(const QPalette& palette);
QColor hairline(const QPalette& palette);
QColor card(const QPalette& palette);
QColor added(const QPalette& palette);
QColor removed(const QPalette& palette);
QColor changed(const QPalette& palette);
QColor withOpacity(QColor colour, double opacity);
/// The contrast ratio of WCAG 2.2, 1 to 21, for opaque colours.
double contrast(const QColor& a, const QColor& b);

/// The desktop's font. The size is for a desktop with ordinary text size and grows with the user's.
QFont font(double size, QFont::Weight weight = QFont::Normal);
QFont monospaced(double size);

/// False where the desktop asks for less motion.
bool animates(const QWidget& widget);

/// For QPainter::drawText(): aligned to the interface's leading edge, whatever the script of the text.
int leading(Qt::LayoutDirection direction, Qt::Alignment vertical = Qt::AlignVCenter);

/// A line of one device pixel along the top edge of the rectangle.
void drawHairline(QPainter& painter, const QRectF& rect, const QPalette& palette);
/// A rectangle with round corners and no outline.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& colour);
/// A ring around a control that has the keyboard, 2 wide and 2 away from the rectangle.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette);

}  // namespace quillmark::look
