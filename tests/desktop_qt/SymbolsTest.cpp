#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <set>

#include <gmock/gmock.h>

#include "commands/UserAction.h"
#include "widgets/Symbols.h"

namespace quillmark {
namespace {

QStringList drawings() {
  QStringList names;
  for (const QString& file : QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.svg")})) {
    names << file.chopped(4);
  }
  return names;
}

QImage pictureOf(const QString& name, qreal scale) {
  return symbols::pixmap(name.toStdString(), 20, scale, Qt::black).toImage();
}

TEST(Symbols, everyNameHasADrawingAndEveryDrawingAName) {
  std::set<std::string> names{
      // tray menu
      "pencil.line", "gear", "globe", "pencil.and.scribble", "questionmark.circle", "arrow.counterclockwise.circle",
      "exclamationmark.arrow.counterclockwise.circle", "arrow.down.circle.fill",
      // panels
      "brain", "progress", "exclamationmark.triangle", "chevron.down", "arrow.2.squarepath", "xmark", "checkmark",
      "document.on.document", "plus", "minus", "sparkle.magnifyingglass", "sparkles",
      // settings
      "gearshape", "cpu", "ellipsis.curlybraces", "keyboard", "info.circle", "eye", "eye.slash", "circlebadge.fill",
      "star.fill", "magnifyingglass", "xmark.circle.fill", "plus.square.on.square", "pencil.tip.crop.circle.badge.plus",
      "line.3.horizontal", "pencil", "ellipsis.circle", "arrow.up.doc", "tray.and.arrow.down", "trash", "doc.on.doc",
      // onboarding
      "hand.wave", "accessibility", "checkmark.circle", "checkmark.circle.fill", "checkmark.shield.fill",
      "text.badge.checkmark", "wand.and.rays", "slider.horizontal.3", "macwindow.on.rectangle",
      "doc.text.magnifyingglass", "key.fill", "plus.circle", "text.cursor"};
  for (const auto kind : allCases<ActionCase>()) {
    names.insert(std::string(UserAction(kind).icon()));
  }
  for (const auto category : allCases<CommandCategory>()) {
    names.insert(std::string(icon(category)));
  }
  names.erase("");  // the main actions, which show their own icons

  std::set<std::string> drawn;
  for (const QString& name : drawings()) {
    drawn.insert(name.toStdString());
  }
  EXPECT_THAT(drawn, testing::ContainerEq(names));
}

TEST(Symbols, areDrawnForTheDevicePixelsOfEachScaleTheUnknownAsTheGeneralOne) {
  EXPECT_EQ(pictureOf("no.such.symbol", 1), pictureOf("command", 1));
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
