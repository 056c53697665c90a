#pragma once

#include <string>

#include "contract/types.h"

namespace kelvane::sondrel {

/// S9 on HF, dBm.
inline constexpr Long kS9 = -73;

/// A level in S units of 6 dB ("S7"), above S9 with the dB beyond ("S9+20").
std::string sUnits(Long dBm);

/// The meter's bar: 0 at S0, 1000 at S9+60.
Long meterBar(Long dBm);

}  // namespace kelvane::sondrel
