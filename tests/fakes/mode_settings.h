#pragma once

#include "contract/modes.h"
#include "contract/types.h"

namespace kelvane {

constexpr Setting kAm = static_cast<Setting>(Mode::Am);
constexpr Setting kLsb = static_cast<Setting>(Mode::Lsb);
constexpr Setting kUsb = static_cast<Setting>(Mode::Usb);
constexpr Setting kCw = static_cast<Setting>(Mode::Cw);
constexpr Setting kFm = static_cast<Setting>(Mode::Fm);

}  // namespace kelvane
