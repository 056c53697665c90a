#pragma once

#include <string_view>

namespace kelvane {

/// The letter that a caption marks with "&" as its key together with Alt, in lower case; 0 where it
/// marks none.
inline char32_t mnemonic(std::string_view caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    const char letter = caption[++i];
    if (letter != '&') return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter;
  }
  return 0;
}

}  // namespace kelvane
