#pragma once

#include <array>
#include <string>
#include <string_view>

#include "components/ambrel/formats/format_parts.h"
#include "contract/modes.h"

namespace kelvane::formats {

// What KiwiSDR's two forms of labels, JSON and CSV, have in common.

inline constexpr std::string_view kKiwi = "KiwiSDR";
/// Fields of a label that are kept and that both forms have: extension, offset, signal bandwidth,
/// and the lower end of a passband that lies elsewhere than usual for its mode.
inline constexpr std::string_view kKiwiExtension = "p", kKiwiOffset = "o", kKiwiSignal = "s",
                                  kKiwiLow = "lo";

inline constexpr auto kKiwiModes = std::to_array<ModeWord>({{static_cast<Setting>(Mode::Am), "AM"},
                                                            {static_cast<Setting>(Mode::Am), "AMN"},
                                                            {static_cast<Setting>(Mode::Usb), "USB"},
                                                            {static_cast<Setting>(Mode::Usb), "USN"},
                                                            {static_cast<Setting>(Mode::Lsb), "LSB"},
                                                            {static_cast<Setting>(Mode::Lsb), "LSN"},
                                                            {static_cast<Setting>(Mode::Cw), "CW"},
                                                            {static_cast<Setting>(Mode::Cw), "CWN"},
                                                            {static_cast<Setting>(Mode::Fm), "NBFM"},
                                                            {static_cast<Setting>(Mode::Sam), "SAM"},
                                                            {static_cast<Setting>(Mode::Sal), "SAL"},
                                                            {static_cast<Setting>(Mode::Sah), "SAU"},
                                                            {static_cast<Setting>(Mode::Drm), "DRM"},
                                                            {-1, "IQ"}});

/// Takes a passband, Hz relative to the carrier, where it is one.
void takeKiwiPassband(double low, double high, Entry& entry);
/// Where the passband of the entry's width begins, Hz relative to the carrier.
Setting kiwiPassbandLow(const Entry& entry);

}  // namespace kelvane::formats
