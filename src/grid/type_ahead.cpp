#include "grid/type_ahead.h"

#include "base/text.h"
#include "base/utf8.h"
#include "ui/key_codes.h"

namespace kelvane {

std::optional<std::size_t> TypeAhead::typed(char32_t character,
                                            const std::vector<std::string>& items) {
  if (character == key::Backspace) {
    dropLastCharacter(typed_);
    return std::nullopt;
  }
  appendCharacter(typed_, character);
  const std::string wanted = upper(typed_);
  std::optional<std::size_t> found;
  int matches = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (!upper(items[i]).starts_with(wanted)) continue;
    // The last match stays: operators type the ending to reach it.
    found = i;
    ++matches;
  }
  if (matches < 2) typed_.clear();
  return found;
}

}  // namespace kelvane
