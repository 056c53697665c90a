#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "components/ambrel/formats/format_parts.h"
#include "contract/modes.h"

namespace kelvane::formats {

// What KiwiSDR's two forms of labels, JSON and CSV, have in common.

inline constexpr std::string_view kKiwi = "KiwiSDR";
/// Fields of a label that are kept and that both forms have: extension, offset, signal bandwidth,
/// and the lower end of a passband that lies elsewhere than usual for its mode.
inline constexpr std::string_view kKiwiExtension = "p", kKiwiOffset = "o", kKiwiSignal = "s",
                                  kKiwiLow = "lo";

inline constexpr auto kKiwiModes =
    std::to_array<ModeWord>({{static_cast<Setting>(Mode::Am), "AM"},
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

/// The group that a type of labels ("T13") is, as the community's list names the types; "Type 16"
/// for one without a name; empty for none.
std::string groupOfKiwiType(std::string_view type);
/// The type that a group is ("T3"); empty where it is none. Seldom made in `room`.
std::string_view kiwiTypeOfGroup(std::string_view group, std::string& room);

/// A label's text: older files have all but letters and digits as "%20".
std::string kiwiText(std::string_view text);
/// The text as a label that is read back the same; mostly itself, else made in `room`.
std::string_view asKiwiText(std::string_view text, std::string& room);

/// By frequency: out of order they are an error there.
std::vector<const Entry*> inKiwiOrder(std::span<const lists::EntryPtr> entries);

/// Takes a passband, Hz relative to the carrier, where it is one.
void takeKiwiPassband(double low, double high, Entry& entry);
/// Where the passband of the entry's width begins, Hz relative to the carrier.
Setting kiwiPassbandLow(const Entry& entry);

}  // namespace kelvane::formats
