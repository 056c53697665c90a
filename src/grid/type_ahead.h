#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

/// The search of one pick list by typing: what was typed so far, and the item that it means.
class TypeAhead {
 public:
  /// The item that the typed text means now; none where no item begins with it, and after a
  /// Backspace, which takes the last character of the text away.
  std::optional<std::size_t> typed(char32_t character, const std::vector<std::string>& items);
  const std::string& text() const { return typed_; }

 private:
  std::string typed_;
};

}  // namespace kelvane
