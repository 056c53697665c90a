#pragma once

#include <cstdint>
#include <string_view>

#include "components/sondrel/rigctld/rigctld_capabilities.h"

namespace kelvane::sondrel {

/// What a radio has in place of a BFO.
enum class BfoWay {
  None,    ///< the mode has no BFO
  Pitch,   ///< the pitch of the CW tone
  Shift,   ///< the shift of the IF passband
  Offset,  ///< nothing: the radio is tuned beside the frequency that is shown
};

/// In which way the BFO works in a mode.
BfoWay bfoWay(const RigctldCapabilities& can, std::string_view mode);

struct BfoLimits {
  std::int32_t low = 0;   ///< Hz
  std::int32_t high = 0;  ///< Hz
};

/// Limits of the BFO in one way. `offset` limits a tuning offset, either side.
BfoLimits bfoLimits(const RigctldCapabilities& can, BfoWay way, std::int32_t offset);

/// The widest limits over all modes that the radio has.
BfoLimits bfoLimits(const RigctldCapabilities& can, std::int32_t offset);

}  // namespace kelvane::sondrel
