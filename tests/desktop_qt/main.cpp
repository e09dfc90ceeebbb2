#include <QApplication>

#include <gmock/gmock.h>

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleMock(&count, arguments);
  const QApplication application(count, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
