#include "components/sondrel/channels/channelized.h"

#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

int sideOf(Setting mode) {
  switch (static_cast<Mode>(mode)) {
    case Mode::Usb:
    case Mode::Fax:
      return 1;
    case Mode::Lsb:
      return -1;
    default:
      return 0;
  }
}

}  // namespace

Hz fixedChannelOffset(Setting mode) {
  constexpr Hz kOffset = 1400;
  return sideOf(mode) * kOffset;
}

Hz filterChannelOffset(Setting mode, Hz filter) { return sideOf(mode) * (filter / 2); }

}  // namespace kelvane::sondrel
