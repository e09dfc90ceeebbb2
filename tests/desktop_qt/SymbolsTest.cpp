#include <QDir>
#include <QGuiApplication>
#include <QImage>

#include <gtest/gtest.h>

#include "panels/views/Symbols.h"

namespace quillmark {
namespace {

/// How many pixels are drawn on at least half.
int inkOf(const QPixmap& picture) {
  const QImage image = picture.toImage();
  int ink = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      ink += image.pixelColor(x, y).alpha() >= 128 ? 1 : 0;
    }
  }
  return ink;
}

TEST(Symbols, everyNameOfTheMenusHasItsOwnDrawing) {
  std::vector<QImage> drawn;
  for (const char* name : {"pencil.line",
                           "pencil.tip.crop.circle",
                           "pencil.and.outline",
                           "arrow.counterclockwise.circle",
                           "exclamationmark.arrow.counterclockwise.circle",
                           "arrow.down.circle.fill",
                           "arrow.up.and.down.text.horizontal",
                           "arrow.down.and.line.horizontal.and.arrow.up",
                           "text.bubble",
                           "text.badge.star",
                           "lasso.badge.sparkles",
                           "bubbles.and.sparkles",
                           "play.circle",
                           "pencil.and.scribble",
                           "globe",
                           "textformat.abc",
                           "face.smiling.inverse",
                           "envelope",
                           "face.smiling",
                           "command",
                           "rectangle.and.text.magnifyingglass",
                           "hammer.circle",
                           "gear",
                           "questionmark.circle",
                           "brain",
                           "progress"}) {
    const QPixmap picture = symbols::pixmap(name, 20, 2, Qt::black);
    EXPECT_GT(inkOf(picture), 80) << name;
    EXPECT_FALSE(std::ranges::count(drawn, picture.toImage())) << name << " looks like another one";
    drawn.push_back(picture.toImage());
  }
}

TEST(Symbols, everyDrawingStaysInsideItsGrid) {
  const QStringList files = QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.svg")});
  ASSERT_FALSE(files.isEmpty());
  for (const QString& file : files) {
    const QImage image = symbols::pixmap(file.chopped(4).toStdString(), 20, 2, Qt::black).toImage();
    for (int i = 0; i < image.width(); ++i) {
      for (const int alpha : {image.pixelColor(i, 0).alpha(), image.pixelColor(i, image.height() - 1).alpha(),
                              image.pixelColor(0, i).alpha(), image.pixelColor(image.width() - 1, i).alpha()}) {
        ASSERT_EQ(alpha, 0) << file.toStdString() << " is cut off";
      }
    }
  }
}

TEST(Symbols, anUnknownNameGetsTheGeneralDrawing) {
  EXPECT_EQ(symbols::pixmap("no.such.symbol", 20, 1, Qt::black).toImage(),
            symbols::pixmap("command", 20, 1, Qt::black).toImage());
}

TEST(Symbols, areDrawnForTheDevicePixelsOfEachScale) {
  for (const qreal scale : {1.0, 1.5, 2.0}) {
    const QPixmap picture = symbols::pixmap("globe", 20, scale, Qt::black);
    EXPECT_EQ(picture.width(), qRound(20 * scale));
    EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(20, 20));
    EXPECT_EQ(symbols::icon("globe").pixmap(QSize(20, 20), scale).width(), qRound(20 * scale));
  }
}

TEST(Symbols, anIconFollowsThePaletteOfTheApplication) {
  const QPalette before = QGuiApplication::palette();
  const QIcon icon = symbols::icon("face.smiling.inverse");
  QPalette palette = before;
  for (const QColor colour : {QColor(0x12, 0x34, 0x56), QColor(0xF1, 0xF1, 0xF3)}) {
    palette.setColor(QPalette::Active, QPalette::WindowText, colour);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, Qt::red);
    QGuiApplication::setPalette(palette);
    EXPECT_EQ(icon.pixmap(20).toImage().pixelColor(10, 4), colour);
    EXPECT_EQ(icon.pixmap(20, QIcon::Disabled).toImage().pixelColor(10, 4), QColor(Qt::red));
    EXPECT_EQ(icon.pixmap(20, QIcon::Selected).toImage().pixelColor(10, 4), palette.color(QPalette::HighlightedText));
  }
  QGuiApplication::setPalette(before);
}

}  // namespace
}  // namespace quillmark
