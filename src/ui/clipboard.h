#pragma once

#include <string>

namespace kelvane {

/// The system's clipboard, as far as it holds text (UTF-8).
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  /// Empty where there is no text; a long one may be cut.
  virtual std::string text() = 0;
  virtual void setText(const std::string& text) = 0;
};

}  // namespace kelvane
