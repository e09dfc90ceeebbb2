#include "widgets/Symbols.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <optional>

#include "widgets/QtText.h"

namespace quillmark::symbols {

namespace {

QString fileFor(const std::string& name) {
  const QString file = QStringLiteral(":/icons/%1.svg").arg(qt(name));
  return QFile::exists(file) ? file : QStringLiteral(":/icons/command.svg");
}

QPixmap render(const QString& file, QSize pixels, const QColor& colour) {
  const QString key =
      QStringLiteral("%1 %2 %3 %4").arg(file).arg(pixels.width()).arg(pixels.height()).arg(colour.rgba());
  QPixmap picture;
  if (QPixmapCache::find(key, &picture)) {
    return picture;
  }
  picture = QPixmap(pixels);
  picture.fill(Qt::transparent);
  QSvgRenderer drawing(file);
  drawing.setAspectRatioMode(Qt::KeepAspectRatio);
  QPainter painter(&picture);
  drawing.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(picture.rect(), colour);
  painter.end();
  QPixmapCache::insert(key, picture);
  return picture;
}

/// Draws a symbol separately for each size, so that nothing is ever scaled.
class Engine : public QIconEngine {
 public:
  struct Colours {
    QPalette::ColorRole role = QPalette::WindowText;
    QPalette::ColorRole active = role;
    std::optional<QColor> always = std::nullopt;
  };

  Engine(QString file, Colours colours) : file_(std::move(file)), colours_(colours) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const qreal scale = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect, render(file_, (QSizeF(rect.size()) * scale).toSize(), colourFor(mode)));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    return render(file_, size, colourFor(mode));
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal) override {
    return pixmap(size, mode, state);  // the size is in device pixels already
  }

  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
    // Hosts of tray icons get bitmaps: these are the sizes they ask for.
    return {{16, 16}, {20, 20}, {22, 22}, {24, 24}, {32, 32}, {48, 48}};
  }

  QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
  bool isNull() override { return false; }
  QString key() const override { return QStringLiteral("QuillmarkSymbol"); }
  QIconEngine* clone() const override { return new Engine(*this); }

 private:
  QColor colourFor(QIcon::Mode mode) const {
    if (colours_.always) {
      return *colours_.always;
    }
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
      case QIcon::Disabled:
        return palette.color(QPalette::Disabled, colours_.role);
      case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
      case QIcon::Active:
        return palette.color(colours_.active);
      default:
        return palette.color(colours_.role);
    }
  }

  QString file_;
  Colours colours_;
};

}  // namespace

QIcon icon(const std::string& name, QPalette::ColorRole role) {
  return QIcon(new Engine(fileFor(name), {.role = role}));
}

QIcon icon(const std::string& name, const QColor& colour) {
  return QIcon(new Engine(fileFor(name), {.always = colour}));
}

QIcon menuIcon(const std::string& name, QPalette::ColorRole role) {
  return QIcon(new Engine(fileFor(name), {.role = role, .active = QPalette::HighlightedText}));
}

void draw(QPainter& painter, QPointF corner, int points, const std::string& name, const QColor& colour) {
  painter.drawPixmap(corner, pixmap(name, points, painter.device()->devicePixelRatioF(), colour));
}

QPixmap pixmap(const std::string& name, int points, qreal scale, const QColor& colour) {
  const int pixels = qRound(points * scale);
  QPixmap picture = render(fileFor(name), {pixels, pixels}, colour);
  picture.setDevicePixelRatio(scale);
  return picture;
}

}  // namespace quillmark::symbols
