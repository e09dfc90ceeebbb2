#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QTimer>
#include <functional>
#include <optional>

namespace quillmark {

/// What the desktop wishes of the looks of programs, by the settings portal of the session bus
/// (org.freedesktop.appearance); nothing where there is no portal. Asks without waiting and follows every change.
class DesktopAppearance {
 public:
  enum class ColorScheme { light, dark };
  struct Wishes {
    std::optional<ColorScheme> scheme;
    std::optional<QColor> accent;
    friend bool operator==(const Wishes&, const Wishes&) = default;
  };

  /// `changed` gets all wishes each time that one becomes known or another one.
  DesktopAppearance(QDBusConnection bus, std::function<void(const Wishes&)> changed);

 private:
  void ask();
  void ask(const QString& key, std::function<void(const QVariant&)> answered);
  void adopt(const Wishes& wishes);

  QDBusConnection bus_;
  std::function<void(const Wishes&)> changed_;
  Wishes wishes_;
  QTimer askSoon_;
};

}  // namespace quillmark
