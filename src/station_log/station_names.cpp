#include "station_log/station_names.h"

#include "station_log/call_sign.h"

namespace kelvane {

namespace {

/// How far from the dial a station still is the one that is heard.
constexpr Hz kSameStation = 250;

}  // namespace

StationNames knownStations(FrequencyComponent& component, const std::vector<Hz>& frequencies) {
  const Hz before = component.GetRxKnownFrequency();
  StationNames names;
  for (const Hz frequency : frequencies) {
    if (!component.FindRxKnownFrequency(frequency, kSameStation)) continue;
    const Text name = component.GetFrqKnownName();
    if (!callInName(name).empty()) names.emplace(frequency, name);
  }
  component.FindRxKnownFrequency(before, 0);
  return names;
}

}  // namespace kelvane
