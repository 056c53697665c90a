#include "components/sondrel/standard_modes.h"

#include <array>

#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

struct Traits {
  bool carrier;
  bool bfo;
  std::array<Hz, 5> filters;  ///< 0 for none
  Hz usual;
};

constexpr std::array<Traits, static_cast<std::size_t>(kModeCount)> kTraits{{
    {true, false, {3000, 4500, 6000, 9000, 12000}, 6000},     // AM
    {true, false, {6000, 9000, 12000, 15000, 25000}, 12000},  // FM
    {false, true, {1800, 2400, 2700, 3000, 4000}, 2700},      // USB
    {false, true, {1800, 2400, 2700, 3000, 4000}, 2700},      // LSB
    {false, true, {150, 300, 500, 1000, 2400}, 500},          // CW
    {false, true, {250, 500, 1000, 1800}, 500},               // RTTY
    {false, true, {1800, 2400, 2700}, 2400},                  // FAX
    {true, false, {3000, 4500, 6000, 9000, 12000}, 6000},     // SAM
    {false, false, {5000, 10000, 12000}, 10000},              // DRM
}};

}  // namespace

ModeChoice standardMode(Setting mode) {
  ModeChoice choice;
  choice.value = mode;
  if (modeName(mode).empty()) return choice;
  const Traits& traits = kTraits[static_cast<std::size_t>(mode)];
  choice.carrier = traits.carrier;
  choice.bfo = traits.bfo;
  for (const Hz filter : traits.filters) {
    if (filter != 0) choice.filters.push_back(filter);
  }
  choice.usual = traits.usual;
  return choice;
}

}  // namespace kelvane::sondrel
