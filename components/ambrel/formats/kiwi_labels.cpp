#include "components/ambrel/formats/kiwi_labels.h"

#include <cmath>

#include "base/number.h"

namespace kelvane::formats {

namespace {

constexpr double kWidestPassband = 10'000'000;

/// Beside the carrier for a sideband, around it otherwise.
Setting usualPassbandLow(const Entry& entry) {
  constexpr Setting kLowestTone = 300;
  const auto mode = static_cast<kelvane::Mode>(entry.mode);
  if (mode == Mode::Usb) return kLowestTone;
  if (mode == Mode::Lsb) return -kLowestTone - entry.width;
  return -entry.width / 2;
}

}  // namespace

void takeKiwiPassband(double low, double high, Entry& entry) {
  if (!(high > low) || low < -kWidestPassband || high > kWidestPassband) return;
  entry.width = static_cast<Setting>(std::lround(high) - std::lround(low));
  const auto begin = static_cast<Setting>(std::lround(low));
  if (entry.width > 0 && begin != usualPassbandLow(entry))
    keepField(entry, kKiwi, kKiwiLow, std::to_string(begin));
}

Setting kiwiPassbandLow(const Entry& entry) {
  const auto kept = wholeNumber(keptField(entry, kKiwi, kKiwiLow));
  const bool fits = kept && *kept >= -kWidestPassband && *kept <= kWidestPassband;
  return fits ? static_cast<Setting>(*kept) : usualPassbandLow(entry);
}

}  // namespace kelvane::formats
