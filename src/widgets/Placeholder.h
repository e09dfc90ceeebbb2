#pragma once

#include <QWidget>
#include <string>

namespace quillmark {

/// A centred text for an empty area, under a symbol if it has one.
class Placeholder : public QWidget {
 public:
  explicit Placeholder(const QString& text, std::string symbol = {}, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string symbol_;
};

}  // namespace quillmark
