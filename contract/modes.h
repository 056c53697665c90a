#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/text.h"

namespace kelvane {

/// Modes, numbered alike in both components: a number from the frequency component is handed to
/// the receiver component as it is. Filters are bandwidths in Hz in both.
enum class Mode : std::int32_t {
  Am = 0,
  Fm = 1,
  Usb = 2,
  Lsb = 3,
  Cw = 4,
  Rtty = 5,
  Fax = 6,
  Sam = 7,  ///< AM with the carrier recovered in the receiver
  Drm = 8,
  // What some radios have besides; no database recommends them.
  Cwr = 9,     ///< CW on the other sideband
  Rttyr = 10,  ///< RTTY on the other sideband
  Wfm = 11,
  Fmn = 12,
  Dsb = 13,
  Sal = 14,  ///< lower sideband of AM with the carrier recovered
  Sah = 15,  ///< upper sideband of the same
  DataUsb = 16,
  DataLsb = 17,
  DataFm = 18,
  DataAm = 19,
};

inline constexpr std::array<std::string_view, 20> kModeNames = {
    "AM",    "FM",  "USB", "LSB", "CW",  "RTTY", "FAX",    "SAM",    "DRM",   "CWR",
    "RTTYR", "WFM", "FMN", "DSB", "SAL", "SAH",  "PKTUSB", "PKTLSB", "PKTFM", "PKTAM"};
inline constexpr std::int32_t kModeCount = static_cast<std::int32_t>(kModeNames.size());

/// The mode's name; empty for a number that is no mode.
constexpr std::string_view modeName(std::int32_t mode) {
  if (mode < 0 || mode >= kModeCount) return {};
  return kModeNames[static_cast<std::size_t>(mode)];
}

/// The mode of that name, in capital or small letters; none where there is no such mode.
inline std::optional<Mode> modeNamed(std::string_view name) {
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    if (equalIgnoringCase(modeName(mode), name)) return static_cast<Mode>(mode);
  }
  return std::nullopt;
}

}  // namespace kelvane
