#include <QApplication>

#include <gmock/gmock.h>

#include "base/Log.h"
#include "widgets/Accessibility.h"

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleMock(&count, arguments);
  quillmark::setLogSink([](std::string_view) {});
  const QApplication application(count, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  quillmark::installAccessibility();
  return RUN_ALL_TESTS();
}
