#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "components/sondrel/capabilities.h"

namespace kelvane::sondrel {

// Modes and AGC values in the words and numbers of the rigctl network protocol.

/// The name under which a mode is told; a mode that the protocol does not know by its nearest kin.
std::string_view protocolMode(Setting mode);
/// The receiver's mode for a name: the one of that name, or of those that do the same, the first
/// that the receiver has; none where it lacks them all.
std::optional<Setting> modeForName(const Capabilities& can, std::string_view name);
/// The bit that stands for a mode in the protocol's sets of modes; 0 where there is none.
std::uint64_t modeBitOf(Setting mode);
/// The names of all modes that the receiver has, a blank after each.
std::string protocolModes(const Capabilities& can);

/// The protocol's fixed number of an AGC value by its name, in capital or
/// small letters; none where it has none.
std::optional<std::int32_t> protocolAgc(std::string_view name);
/// The receiver's value for the protocol's number; none where it lacks it.
std::optional<Setting> agcForCode(const Capabilities& can, std::int64_t code);
/// "2=FAST 3=SLOW", as the protocol lists them.
std::string agcLevelList(const Capabilities& can);

}  // namespace kelvane::sondrel
