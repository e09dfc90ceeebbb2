#pragma once

namespace quillmark {

enum class Permission { granted, notAskedYet, denied, unavailable };

/// What this session allows the program to do to other applications. Main thread only.
class Permissions {
 public:
  Permissions() = default;
  Permissions(const Permissions&) = delete;
  Permissions& operator=(const Permissions&) = delete;
  virtual ~Permissions() = default;

  /// Whether keys can be simulated in other applications; checked again at each call.
  virtual Permission keyInjection() const = 0;
};

}  // namespace quillmark
