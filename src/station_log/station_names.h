#pragma once

#include <vector>

#include "contract/components.h"
#include "station_log/log_export.h"

namespace kelvane {

/// The names, as far as they hold a call sign, of the stations that the component knows on
/// frequencies. What it spoke of before, it speaks of afterwards.
StationNames knownStations(FrequencyComponent& component, const std::vector<Hz>& frequencies);

}  // namespace kelvane
