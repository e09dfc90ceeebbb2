#pragma once

namespace quillmark {

/// The small indicator beside the pointer while a run waits for its answer.
class LoadingPanel {
 public:
  LoadingPanel() = default;
  LoadingPanel(const LoadingPanel&) = delete;
  LoadingPanel& operator=(const LoadingPanel&) = delete;
  virtual ~LoadingPanel() = default;

  virtual void show() = 0;
  virtual void hide() = 0;
};

}  // namespace quillmark
