#include "components/sondrel/s_meter.h"

#include <algorithm>

namespace kelvane::sondrel {

namespace {

constexpr Long kUnit = 6;
constexpr Long kS0 = kS9 - 9 * kUnit;
constexpr Long kFullScale = kS9 + 60;

}  // namespace

std::string sUnits(Long dBm) {
  if (dBm > kS9) return "S9+" + std::to_string(dBm - kS9);
  return "S" + std::to_string(std::max<Long>(dBm - kS0, 0) / kUnit);
}

Long meterBar(Long dBm) {
  return (std::clamp(dBm, kS0, kFullScale) - kS0) * 1000 / (kFullScale - kS0);
}

}  // namespace kelvane::sondrel
