#include "components/sondrel/rigctld/rigctld_bfo.h"

#include <algorithm>

namespace kelvane::sondrel {

BfoWay bfoWay(const RigctldCapabilities& can, std::string_view mode) {
  const bool cw = mode.starts_with("CW");
  const bool sideband = mode == "USB" || mode == "LSB";
  if (cw && can.settable.has(RigItem::Pitch) && can.readable.has(RigItem::Pitch)) {
    return BfoWay::Pitch;
  }
  if (sideband && can.settable.has(RigItem::Shift) && can.readable.has(RigItem::Shift)) {
    return BfoWay::Shift;
  }
  return cw || sideband || mode.starts_with("RTTY") ? BfoWay::Offset : BfoWay::None;
}

BfoLimits bfoLimits(const RigctldCapabilities& can, BfoWay way, std::int32_t offset) {
  // Servers do not tell the range of the pitch; this is what receivers have in common.
  constexpr BfoLimits kPitch{300, 900};
  switch (way) {
    case BfoWay::None:
      break;
    case BfoWay::Pitch:
      return kPitch;
    case BfoWay::Shift:
      return {-can.mostShift, can.mostShift};
    case BfoWay::Offset:
      return {-offset, offset};
  }
  return {};
}

BfoLimits bfoLimits(const RigctldCapabilities& can, std::int32_t offset) {
  BfoLimits widest;
  for (const auto& mode : can.modes) {
    const auto limits = bfoLimits(can, bfoWay(can, mode), offset);
    widest.low = std::min(widest.low, limits.low);
    widest.high = std::max(widest.high, limits.high);
  }
  return widest;
}

}  // namespace kelvane::sondrel
