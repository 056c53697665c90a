#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "base/answer.h"

namespace kelvane {

// The words in which the contract's tables are written. The COM face and the COM client read the
// same tables with the same words, bound to COM's types.

using Index = std::int16_t;    ///< a receiver's place in the list of configured receivers, 0 to 7
using Hz = std::int32_t;       ///< whole hertz; -1 where no frequency is known
using Setting = std::int32_t;  ///< a mode, filter, AGC, blanker or attenuator value; -1 unknown
using Count = std::int32_t;
using Channel = std::int32_t;  ///< a memory channel's number; -1 for none
using Long = std::int32_t;
using Flag = bool;
using Text = std::string;  ///< UTF-8

/// The end of what goes on without one.
inline constexpr Hz kHighestHz = std::numeric_limits<Hz>::max();
/// Most receivers that one component serves.
inline constexpr int kMostReceivers = 8;

/// A record that one of the known-frequency walks arrived at.
struct FrqRecord {
  Long position = 0;  ///< place of the record in what is walked, from 1; 0 when there is none
  Count count = 0;    ///< number of records in what is walked
  Hz frequency = -1;  ///< the record's frequency; the frequency before the step when there is none

  bool operator==(const FrqRecord&) const = default;
};

/// Direction of a walk through bands, sets and known frequencies.
inline constexpr Long kNext = 1;
inline constexpr Long kPrevious = -1;

/// Which frequency `GetRxFrequency` is asked for.
inline constexpr Long kTuned = 0;              ///< the tuned frequency
inline constexpr Long kFixedChannelized = 1;   ///< the fixed channelized frequency
inline constexpr Long kFilterChannelized = 2;  ///< the channelized frequency tied to the filter
inline constexpr Long kChannelBoundary = 3;    ///< channelized tuning applies below this frequency

/// What `SetRxForward` is told, besides a master's receiver index.
inline constexpr Long kForwardNone = -1;
inline constexpr Long kForwardAll = -2;

/// What `OpenRxConfig` answers when the list of receivers cannot be read now and the operator, who
/// was asked, gave up.
inline constexpr Count kGivenUp = -1;

}  // namespace kelvane
