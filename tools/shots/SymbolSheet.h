#pragma once

#include <QImage>
#include <QPalette>

namespace quillmark {

/// Every drawing of the program at 20 points, in the order of the files, with its name under it: in the palette's
/// WindowText on its Window. `scale` is device pixels for one point. Needs a QGuiApplication.
QImage symbolSheet(const QPalette& palette, double scale);

}  // namespace quillmark
