#include "platform/desktop/SocketWatch.h"

#include <QAbstractEventDispatcher>

namespace quillmark {

SocketWatch::SocketWatch(int descriptor, std::function<void()> ready, When when)
    : notifier_(descriptor, QSocketNotifier::Read) {
  if (when == When::readableAndBeforeSleep) {
    beforeSleep_ = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                                    &notifier_, ready);
  }
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, std::move(ready));
}

SocketWatch::~SocketWatch() { QObject::disconnect(beforeSleep_); }

}  // namespace quillmark
