#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QTimer>
#include <functional>
#include <optional>

namespace quillmark {

/// The desktop's preferences for the appearance of programs, from the settings portal on the session bus
/// (org.freedesktop.appearance); none where there is no portal. Never blocks, and follows every change.
class DesktopAppearance {
 public:
  enum class ColorScheme { light, dark };
  struct Wishes {
    std::optional<ColorScheme> scheme;
    std::optional<QColor> accent;
    friend bool operator==(const Wishes&, const Wishes&) = default;
  };

  /// `changed` is called with all preferences each time one becomes known or changes.
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
