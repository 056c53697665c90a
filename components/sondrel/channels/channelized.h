#pragma once

#include "contract/types.h"

namespace kelvane::sondrel {

// On channelized bands a station is listed under the middle of its channel, while a receiver in a
// sideband mode is tuned to the suppressed carrier beside it.

/// Channelized tuning is for frequencies below this one, Hz.
inline constexpr Hz kChannelizedBelow = 30'000'000;

/// How far the middle of the channel lies above the tuned frequency, Hz: 1400 in the upper sideband
/// modes, -1400 in LSB, 0 in all others.
Hz fixedChannelOffset(Setting mode);
/// The same for a channel as wide as the filter.
Hz filterChannelOffset(Setting mode, Hz filter);

}  // namespace kelvane::sondrel
