#include "platform/desktop/QtAlerts.h"

#include <QCursor>
#include <QDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextDocument>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/desktop/X11Hints.h"

namespace quillmark {

namespace {

constexpr int iconSide = 40;
constexpr int textWidth = 380;

QScreen* screenOfPointer() {
  QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
  return screen ? screen : QGuiApplication::primaryScreen();
}

QLabel* makeTitle(const QString& text) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setFixedWidth(textWidth);
  QFont font = label->font();
  font.setBold(true);
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
  view->document()->setTextWidth(textWidth);
  const int height = qCeil(view->document()->size().height());
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
    const bool warning = alert.style == AlertStyle::warning;
    const QString title = QString::fromStdString(alert.title);
    const QString message = QString::fromStdString(alert.message);
    const QRect area = screenOfPointer()->availableGeometry();
    setWindowTitle(QStringLiteral("Quillmark"));
    setAccessibleName(title);
    setAccessibleDescription(message);
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* const icon = new QLabel;
    const auto kind = warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    icon->setPixmap(style()->standardIcon(kind).pixmap(iconSide));

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

    auto* const button = new QPushButton(QString::fromStdString(alert.button));
    button->setDefault(true);
    button->setMinimumSize(88, 30);
    QObject::connect(button, &QPushButton::clicked, this, &QDialog::accept);

    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(20, 20, 20, 16);
    all->setSpacing(20);
    all->setSizeConstraint(QLayout::SetFixedSize);
    all->addLayout(body);
    all->addWidget(button, 0, Qt::AlignRight);

    button->setFocus();
    adjustSize();
    move(area.center() - rect().center());
  }
};

QtAlerts::QtAlerts() = default;
QtAlerts::~QtAlerts() = default;

void QtAlerts::present(const Alert& alert, std::function<void()> closed) {
  Window* const window = windows_.insert(std::make_unique<Window>(alert)).first->get();
  QObject::connect(window, &QDialog::finished, window, [this, window, closed = std::move(closed)] {
    const auto found =
        std::find_if(windows_.begin(), windows_.end(), [&](const auto& one) { return one.get() == window; });
    if (found == windows_.end()) {
      return;
    }
    windows_.extract(found).value().release()->deleteLater();
    if (const auto call = closed) {  // a copy: the call may end this object, and the window with it
      call();
    }
  });
  window->show();
  x11::bringToFront(*window);
}

}  // namespace quillmark
