#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quillmark {

/// Cuts a stream of bytes into lines that end at CR, LF or CRLF, wherever its blocks are cut. A byte order mark at the
/// start is skipped. Lines are UTF-8; each maximal invalid part becomes U+FFFD.
class EventStreamLines {
 public:
  using OnLine = std::function<void(const std::string& line)>;

  /// Takes the next block and gives each line that it completes. Costs nothing for what earlier blocks brought.
  void feed(std::string_view block, const OnLine& onLine);
  /// The stream has ended: gives what stands behind the last line end, if there is anything.
  void finish(const OnLine& onLine);

 private:
  void give(std::string_view rest, const OnLine& onLine);

  std::string incompleteLine_;
  bool isFirstLine_ = true;
  bool followsCarriageReturn_ = false;  ///< a line feed now belongs to the line end before it
};

}  // namespace quillmark
