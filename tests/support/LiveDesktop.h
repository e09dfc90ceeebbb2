#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/Trace.h"
#include "support/XSession.h"

namespace quillmark {

struct Programs {
  std::filesystem::path quillmark;    ///< the desktop program
  std::filesystem::path commandLine;  ///< the program that users call
  std::filesystem::path service;      ///< the local service
};

/// A text as typed, and its expected correction.
struct Sample {
  std::string typed;
  std::string corrected;
};

/// A sentence or two with spelling mistakes, different for each number.
Sample sampleText(int number);

/// Stores the settings that a run needs: the local service, results that replace the selection, and Control+Alt+G for
/// correcting.
void prepareData(const std::filesystem::path& directory);

/// A screen with a session bus, a backend and Quillmark, ready to take its hot key. Throws std::runtime_error when
/// something does not come up.
class LiveDesktop {
 public:
  /// With the local service; `serviceDelay` is its latency.
  explicit LiveDesktop(const Programs& programs, std::chrono::milliseconds serviceDelay = {});
  /// With a backend already listening on the loopback interface.
  LiveDesktop(std::filesystem::path quillmark, int backendPort);

  XSession& session() { return session_; }
  Trace& trace() { return trace_; }
  const std::filesystem::path& home() const { return session_.home(); }
  /// The program's data directory.
  std::filesystem::path data() const { return home() / "data"; }

  /// Quillmark runs from the beginning. Starting it waits until it is ready, and restarts the trace.
  void startQuillmark();
  void endQuillmark() { quillmark_.reset(); }
  /// Ends the program as the end of a session does. Returns whether it exited on its own and without an error.
  bool quillmarkEndsWell();
  pid_t quillmarkPid() const { return quillmark_->pid(); }

  /// Presses and releases the hot key as a user does.
  void triggerHotKey();

  /// Whether the program still runs, and the end of its output.
  bool quillmarkRuns() { return quillmark_->running(); }
  std::string quillmarkLog() const;

  void takePicture(const std::filesystem::path& file) const;

 private:
  void setUp(const std::string& backendPort);

  XSession session_;
  Trace trace_;
  std::filesystem::path program_;
  std::unique_ptr<Process> bus_;
  std::unique_ptr<Process> service_;
  std::unique_ptr<Process> quillmark_;
};

/// A real editor with one file open.
class Editor {
 public:
  /// `kind` is "mousepad" or "featherpad".
  Editor(LiveDesktop& desk, const std::string& kind, const std::string& contents = "");

  pid_t pid() const { return process_->pid(); }
  void focus();
  /// Replaces everything by typing, saves, and waits until the file contains exactly that.
  void write(const std::string& text);
  void selectAll();
  /// Leaves nothing selected.
  void deselect();
  /// Saves repeatedly until the file contains the text or the deadline has passed.
  bool savesAs(const std::string& text, std::chrono::milliseconds deadline);
  std::string fileContents() const;

 private:
  LiveDesktop& desk_;
  std::filesystem::path file_;
  std::unique_ptr<Process> process_;
  XSession::Window window_;
};

/// Text for a report: control characters visible, long texts cut.
std::string shown(std::string_view text);

}  // namespace quillmark
