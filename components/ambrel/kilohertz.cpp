#include "components/ambrel/kilohertz.h"

#include <cstdint>
#include <limits>

namespace kelvane::ambrel {

bool readKilohertz(std::string_view text, Hz& frequency) {
  constexpr std::int64_t kMost = std::numeric_limits<Hz>::max();
  std::int64_t hertz = 0;
  std::int64_t unit = 1000;
  bool point = false, digit = false;
  for (const char c : text) {
    if (c >= '0' && c <= '9') {
      digit = true;
      if (point) unit /= 10;
      // Before the point a digit shifts what is there; behind it, it adds its own worth.
      hertz = point ? hertz + (c - '0') * unit : hertz * 10 + (c - '0') * 1000;
      if (hertz > kMost) return false;
    } else if (c == '.' && !point) {
      point = true;
    } else {
      return false;
    }
  }
  frequency = static_cast<Hz>(hertz);
  return digit && hertz > 0;
}

std::string kilohertzText(Hz frequency) {
  std::string text = std::to_string(frequency / 1000);
  int rest = frequency % 1000;
  if (rest == 0) return text;
  text += '.';
  for (; rest > 0; rest = rest % 100 * 10) text += static_cast<char>('0' + rest / 100);
  return text;
}

}  // namespace kelvane::ambrel
