#include "widgets/Accessibility.h"

#include <QAccessibleWidget>

namespace quillmark {

namespace {

constexpr const char* roleProperty = "accessibleRole";

/// A widget of no special kind.
class PlainInterface : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    if (widget()->focusProxy() != nullptr) {
      state.focusable = state.focused = false;  // that widget reports it itself
    }
    return state;
  }
};

QAccessibleInterface* make(const QString& className, QObject* object) {
  if (auto* const view = dynamic_cast<AccessibleView*>(object)) {
    return view->makeAccessible();
  }
  auto* const widget = dynamic_cast<QWidget*>(object);
  if (!widget) {
    return nullptr;
  }
  if (const QVariant role = widget->property(roleProperty); role.isValid()) {
    return new PlainInterface(widget, role.value<QAccessible::Role>());
  }
  if (className == QLatin1String("QWidget")) {
    return new PlainInterface(widget, widget->isWindow() ? QAccessible::Window : QAccessible::Client);
  }
  return nullptr;
}

}  // namespace

void installAccessibility() { QAccessible::installFactory(make); }

void setRole(QWidget& widget, QAccessible::Role role) { widget.setProperty(roleProperty, QVariant::fromValue(role)); }

}  // namespace quillmark
