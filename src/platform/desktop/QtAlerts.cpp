#include "platform/desktop/QtAlerts.h"

#include <QCursor>
#include <QDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace quillmark {

namespace {

constexpr int iconSide = 40;
constexpr int textWidth = 380;

QScreen* screenOfPointer() {
  QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
  return screen ? screen : QGuiApplication::primaryScreen();
}

/// An icon that looks the same on every desktop: not all themes have one.
QPixmap makeSign(AlertStyle style, qreal scale) {
  const bool warning = style == AlertStyle::warning;
  QPixmap picture(QSize(iconSide, iconSide) * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ground = warning ? QColor(0xF2, 0xB1, 0x1B) : QColor(0x2B, 0x66, 0xD9);
  const QColor mark = warning ? QColor(0x1B, 0x1B, 0x1E) : QColor(Qt::white);
  painter.setBrush(ground);
  painter.setPen(QPen(ground, 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  if (warning) {
    painter.drawPolygon(QPolygonF({{20, 6}, {36, 33}, {4, 33}}));
  } else {
    painter.drawEllipse(QPointF(20, 20), 15, 15);
  }
  // The "i" is the "!" upside down.
  const qreal dot = warning ? 30.5 : 12;
  painter.setPen(QPen(mark, 4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(warning ? QLineF(20, 15, 20, 23.5) : QLineF(20, 19, 20, 28.5));
  painter.drawPoint(QPointF(20, dot));
  return picture;
}

QLabel* makeTitle(const QString& text) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setFixedWidth(textWidth);
  QFont font = label->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() + 1);
  label->setFont(font);
  return label;
}

/// Text that can be selected, breaks anywhere if it must, and scrolls above `tallest`.
QTextEdit* makeMessage(const QString& text, int tallest) {
  auto* const view = new QTextEdit;
  view->setPlainText(text);
  view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  view->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  view->setTabChangesFocus(true);
  view->setFrameShape(QFrame::NoFrame);
  view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  view->viewport()->setAutoFillBackground(false);
  view->document()->setDocumentMargin(0);
  QTextBlockFormat lines;
  lines.setLineHeight(130, QTextBlockFormat::ProportionalHeight);
  QTextCursor everything(view->document());
  everything.select(QTextCursor::Document);
  everything.mergeBlockFormat(lines);

  // Measured on a copy: the view sets the width of its own document back to what it has before it is shown.
  const std::unique_ptr<QTextDocument> measured(view->document()->clone());
  measured->setTextWidth(textWidth);
  const int height = qCeil(measured->size().height());
  const bool scrolls = height > tallest;
  view->setFixedHeight(std::min(height, tallest));
  view->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  view->setFixedWidth(textWidth + (scrolls ? view->verticalScrollBar()->sizeHint().width() + 8 : 0));
  return view;
}

}  // namespace

class QtAlerts::Window : public QDialog {
 public:
  explicit Window(const Alert& alert)
      : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                             Qt::WindowStaysOnTopHint) {  // our floating panels must not cover it
    const QString title = QString::fromStdString(alert.title);
    const QString message = QString::fromStdString(alert.message);
    const QRect area = screenOfPointer()->availableGeometry();
    setWindowTitle(QStringLiteral("Quillmark"));
    setAccessibleName(title);
    setAccessibleDescription(message);
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* const icon = new QLabel;
    icon->setPixmap(makeSign(alert.style, devicePixelRatioF()));

    auto* const text = new QVBoxLayout;
    text->setSpacing(8);
    text->addWidget(makeTitle(title));
    if (!message.isEmpty()) {
      text->addWidget(makeMessage(message, area.height() / 2));
    }
    text->addStretch();

    auto* const body = new QHBoxLayout;
    body->setSpacing(16);
    body->addWidget(icon, 0, Qt::AlignTop);
    body->addLayout(text);

    // In order of importance from the right.
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    QPushButton* button = nullptr;
    for (std::size_t i = alert.buttons.size(); i-- > 0;) {
      button = new QPushButton(QString::fromStdString(alert.buttons[i]));
      button->setDefault(i == 0);
      button->setMinimumSize(88, 30);
      QObject::connect(button, &QPushButton::clicked, this, [this, i] { done(static_cast<int>(i)); });
      buttons->addWidget(button);
    }
    last_ = static_cast<int>(alert.buttons.size()) - 1;

    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(20, 20, 20, 16);
    all->setSpacing(20);
    all->setSizeConstraint(QLayout::SetFixedSize);
    all->addLayout(body);
    all->addLayout(buttons);

    if (button != nullptr) {
      button->setFocus();  // the default one
    }
    adjustSize();
    move(area.center() - rect().center());
  }

  /// Escape and the window's own button.
  void reject() override { done(last_); }

 private:
  int last_ = 0;
};

QtAlerts::QtAlerts(WindowHints& hints, std::vector<QtPanelWindow*> panels)
    : hints_(hints), panels_(std::move(panels)) {}
QtAlerts::~QtAlerts() = default;

void QtAlerts::present(const Alert& alert, Closed closed) {
  Window* const window = windows_.insert(std::make_unique<Window>(alert)).first->get();
  // Focus of another application's window is up to the window manager.
  const auto panel = std::ranges::find_if(panels_, &QtPanelWindow::hasKeyboard);
  QtPanelWindow* const before = panel == panels_.end() ? nullptr : *panel;
  QObject::connect(window, &QDialog::finished, window, [this, window, before, closed = std::move(closed)](int button) {
    const auto found =
        std::find_if(windows_.begin(), windows_.end(), [&](const auto& one) { return one.get() == window; });
    if (found == windows_.end()) {
      return;
    }
    windows_.extract(found).value().release()->deleteLater();
    if (before && before->isVisible()) {
      before->makeKeyAndOrderFront();
    }
    if (const auto call = closed) {  // a copy: the call may end this object, and the window with it
      call(static_cast<std::size_t>(button));
    }
  });
  window->show();
  hints_.bringToFront(*window);
}

}  // namespace quillmark
