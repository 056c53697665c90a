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
};

inline constexpr std::array<std::string_view, 9> kModeNames = {"AM",   "FM",  "USB", "LSB", "CW",
                                                               "RTTY", "FAX", "SAM", "DRM"};
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
