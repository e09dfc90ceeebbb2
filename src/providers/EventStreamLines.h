#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quillmark {

/// Splits a stream of bytes into lines ending in CR, LF or CRLF, wherever its blocks are cut. A byte order mark at the
/// start is skipped. Lines are UTF-8; each maximal invalid part becomes U+FFFD.
class EventStreamLines {
 public:
  using OnLine = std::function<void(const std::string& line)>;

  /// Takes the next block and reports each line that it completes. Does not rescan earlier blocks.
  void feed(std::string_view block, const OnLine& onLine);
  /// The stream has ended: reports what follows the last line end, if anything.
  void finish(const OnLine& onLine);

 private:
  void give(std::string_view rest, const OnLine& onLine);

  std::string incompleteLine_;
  bool isFirstLine_ = true;
  bool followsCarriageReturn_ = false;  ///< a line feed now completes the previous line end
};

}  // namespace quillmark
