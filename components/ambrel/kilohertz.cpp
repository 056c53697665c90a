#include "components/ambrel/kilohertz.h"

#include <cstdint>

namespace kelvane::ambrel {

bool readKilohertz(std::string_view text, Hz& frequency) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto digit = [&at] { return static_cast<unsigned>(*at - '0'); };
  std::uint64_t hertz = 0;
  for (; at != end && digit() <= 9; ++at) {
    hertz = hertz * 10 + digit();
    if (hertz > std::uint64_t{kHighestHz}) return false;
  }
  hertz *= 1000;
  if (at != end && *at == '.') {
    unsigned unit = 100;
    for (++at; at != end && digit() <= 9; ++at, unit /= 10) hertz += digit() * unit;
  }
  frequency = static_cast<Hz>(hertz);
  return at == end && hertz > 0 && hertz <= std::uint64_t{kHighestHz};
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
