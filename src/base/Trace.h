#pragma once

namespace quillmark::trace {

/// A point in the course of a start, a run or a panel. The programs mark only the constants below; the demo, the tests
/// and the bench look them up by the same names.
struct Stage {
  const char* name;
};

inline constexpr Stage processStarted{"process started"};
inline constexpr Stage ready{"ready"};

inline constexpr Stage hotKeyReleased{"hot key released"};
inline constexpr Stage copyKeyPosted{"copy key posted"};
inline constexpr Stage pasteboardRead{"pasteboard read"};
inline constexpr Stage requestSent{"request sent"};
inline constexpr Stage answerReceived{"answer received"};
inline constexpr Stage pasteboardWritten{"pasteboard written"};
inline constexpr Stage pasteKeyPosted{"paste key posted"};

inline constexpr Stage panelDrawn{"panel drawn"};
inline constexpr Stage panelHasKeyboard{"panel has the keyboard"};
inline constexpr Stage commandMenuShown{"command menu shown"};

inline constexpr Stage reviewPanelShown{"review panel shown"};
inline constexpr Stage reviewChunk{"review chunk"};
inline constexpr Stage reviewAnswered{"review answered"};
inline constexpr Stage reviewFailed{"review failed"};
inline constexpr Stage reviewTextDrawn{"review text drawn"};
inline constexpr Stage reviewShowsText{"review shows text"};
inline constexpr Stage reviewShowsStyled{"review shows styled"};
inline constexpr Stage reviewShowsLines{"review shows lines"};
inline constexpr Stage reviewShowsWords{"review shows words"};
inline constexpr Stage reviewShowsError{"review shows error"};
inline constexpr Stage reviewShowsLoading{"review shows loading"};

/// Opens the file named by QUILLMARK_TRACE, if there is one. Call once, before other threads start.
void open();

/// Appends "<nanoseconds of the monotonic clock> <name of the stage>" to the trace; without a trace it costs one
/// branch. Any thread.
void mark(Stage stage);

}  // namespace quillmark::trace
