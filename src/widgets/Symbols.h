#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QPixmap>
#include <string>

class QPainter;

/// Icons by name: one file of resources/icons/ for each name, drawn as lines in one colour. An unknown name gets the
/// icon "command".
namespace quillmark::symbols {

/// Crisp at any size and scale. Takes its colour from the application's palette each time it is painted, so it follows
/// the colour scheme, and from its disabled and selected groups where the icon is painted in that state.
QIcon icon(const std::string& name, QPalette::ColorRole role = QPalette::WindowText);

/// As above, always in this colour.
QIcon icon(const std::string& name, const QColor& colour);

/// For entries of menus that the toolkit draws: the active entry has the highlight colour as its background.
QIcon menuIcon(const std::string& name, QPalette::ColorRole role = QPalette::WindowText);

/// Draws `points` by `points` logical points, as crisp as the painter's device allows.
void draw(QPainter& painter, QPointF corner, int points, const std::string& name, const QColor& colour);

/// One picture of `points` by `points` logical points, `scale` device pixels each.
QPixmap pixmap(const std::string& name, int points, qreal scale, const QColor& colour);

}  // namespace quillmark::symbols
