#pragma once

#include <string>
#include <string_view>

#include "contract/types.h"

namespace kelvane::ambrel {

/// Reads kHz with a decimal point ("16.4", "6070") as Hz; false where it is no frequency above 0
/// that 32 bits can say in Hz.
bool readKilohertz(std::string_view text, Hz& frequency);

/// "6070", "518.5": kHz without needless decimals.
std::string kilohertzText(Hz frequency);

}  // namespace kelvane::ambrel
