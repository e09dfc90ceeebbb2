#include "shots/SymbolSheet.h"

#include <QDir>
#include <QPainter>

#include "widgets/Symbols.h"

namespace quillmark {

namespace {

constexpr int columns = 8;
constexpr int symbolSize = 20;
constexpr QSize cell(104, 64);
constexpr int margin = 12;

/// Long names may go on in the next line after each of their dots.
QString breakable(QString name) { return name.replace(QLatin1Char('.'), QStringLiteral(".\u200B")); }

}  // namespace

QImage symbolSheet(const QPalette& palette, double scale) {
  const QStringList files =
      QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
  const int rows = (static_cast<int>(files.size()) + columns - 1) / columns;
  const QSize points(columns * cell.width() + 2 * margin, rows * cell.height() + 2 * margin);
  QImage sheet((QSizeF(points) * scale).toSize(), QImage::Format_RGB32);
  sheet.setDevicePixelRatio(scale);
  sheet.fill(palette.color(QPalette::Window));

  const QColor colour = palette.color(QPalette::WindowText);
  QPainter painter(&sheet);
  painter.setPen(colour);
  QFont font = painter.font();
  font.setPixelSize(8);
  painter.setFont(font);
  for (int i = 0; i < files.size(); ++i) {
    const QString name = files[i].chopped(4);
    const QPoint corner(margin + i % columns * cell.width(), margin + i / columns * cell.height());
    const QPoint symbol = corner + QPoint((cell.width() - symbolSize) / 2, 4);
    painter.drawPixmap(symbol, symbols::pixmap(name.toStdString(), symbolSize, scale, colour));
    painter.drawText(QRect(corner, cell).adjusted(2, symbolSize + 8, -2, 0), Qt::AlignHCenter | Qt::TextWordWrap,
                     breakable(name));
  }
  return sheet;
}

}  // namespace quillmark
