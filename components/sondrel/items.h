#pragma once

#include <cstddef>
#include <cstdint>

#include "contract/types.h"

namespace kelvane::sondrel {

/// A value of a receiver that can be asked for and set. Its numbers are the contract's: Hz for
/// Frequency, Filter, Bfo and Step, else the number of the setting; HfFilter 1 on, 0 off.
enum class Item : std::uint8_t {
  Frequency,
  Mode,
  Filter,
  Agc,
  Blanker,
  Attenuator,
  Bfo,
  HfFilter,
  Step,  ///< only ever changed at the receiver itself
};
inline constexpr std::size_t kItemCount = 9;

/// Who brought a value about.
enum class Cause : std::uint8_t {
  Request,     ///< an operation of the component, the radio's rounding of it included
  Forwarded,   ///< the same change at another receiver, passed on
  AtReceiver,  ///< the receiver's own knob, or another program that uses it
  Program,     ///< a program that shares the receiver; counts once it has stood for a while
  Learned,     ///< nobody: the value was there before and has been read for the first time
};

/// What the contract answers for an item of which nothing is known.
constexpr std::int32_t unknownValue(Item item) {
  switch (item) {
    case Item::Frequency:
    case Item::Mode:
    case Item::Agc:
    case Item::Blanker:
    case Item::Attenuator:
    case Item::HfFilter:
      return -1;
    default:
      return 0;
  }
}

/// One accepted wish that a receiver has to carry out.
struct Request {
  Item item = Item::Frequency;
  std::int32_t value = 0;    ///< within what the receiver can do
  std::int32_t filter = 0;   ///< for Mode: the bandwidth to use with it, Hz; 0 where none is known
  std::uint32_t ticket = 0;  ///< names the request in the report that answers it; never 0
  Cause cause = Cause::Request;
};

}  // namespace kelvane::sondrel
