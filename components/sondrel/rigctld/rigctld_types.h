#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "base/time.h"
#include "components/sondrel/items.h"
#include "contract/link_state.h"

namespace kelvane::sondrel {

struct RigctldCapabilities;

/// What is read from a radio or asked of it. The numbers that go with an item:
/// Frequency, Filter (bandwidth), Pitch, Shift, Bfo, Step in Hz; Strength in dB as the server gives
/// it; Attenuator and Preamp in dB, 0 off; Agc the protocol's own code; Blanker and Squelch 1 on or
/// open; SquelchLevel in the server's dB; Clock seconds of the day.
enum class RigItem : std::uint8_t {
  Frequency,
  Mode,
  Filter,
  Strength,
  Squelch,
  SquelchLevel,
  Attenuator,
  Agc,
  Blanker,
  Preamp,
  Pitch,  ///< the pitch of the CW tone
  Shift,  ///< the shift of the IF passband
  Bfo,    ///< the contract's BFO, which is a pitch, a shift or an offset of the tuning
  Step,
  Clock,
};
inline constexpr int kRigItems = 15;

constexpr std::size_t at(RigItem item) { return static_cast<std::size_t>(item); }

/// Whether the item is one of the many that a radio may lack, and may take long to refuse.
constexpr bool isSetting(RigItem item) {
  return item != RigItem::Frequency && item != RigItem::Mode && item != RigItem::Filter &&
         item != RigItem::Strength;
}

/// A set of items.
class RigItems {
 public:
  constexpr RigItems() = default;
  constexpr bool has(RigItem item) const { return ((bits_ >> at(item)) & 1U) != 0; }
  constexpr void add(RigItem item) { bits_ |= 1U << at(item); }
  constexpr void remove(RigItem item) { bits_ &= ~(1U << at(item)); }
  bool operator==(const RigItems&) const = default;

 private:
  std::uint32_t bits_ = 0;
};

/// One wish of the operator. A newer one for the same item takes the place of one that waits.
struct RigRequest {
  RigItem item = RigItem::Frequency;
  std::int32_t number = 0;  ///< for Mode: the filter to use with it, Hz, 0 for the radio's choice
  std::string mode;         ///< the radio's own name of the mode; for Mode alone
  std::uint32_t ticket =
      0;  ///< comes back with the value that answers the request; 0 if none waits
};

/// The link's state has been found out anew.
struct LinkReport {
  LinkState state = LinkState::NotResponding;
};

/// A value that was read, and differs from what was last reported or answers a request.
struct ValueReport {
  RigItem item = RigItem::Frequency;
  std::int32_t number = 0;  ///< for Mode: the filter that is in force with it, 0 unknown
  std::string mode;         ///< for Mode alone
  Cause cause = Cause::Learned;
  std::uint32_t ticket = 0;  ///< the request that this answers; 0 for a value found by polling
  bool refused = false;      ///< the request was not carried out
  bool known = true;         ///< false where the radio has never told it: `number` says nothing
};

/// What the radio can do has been found out, or has grown.
struct CapabilityReport {
  std::shared_ptr<const RigctldCapabilities> found;
};

using RigReport = std::variant<LinkReport, ValueReport, CapabilityReport>;

/// Why a connection could not be opened, or ended.
enum class CloseReason {
  BadAddress,   ///< no such name or port
  Refused,      ///< nobody listens there
  Unreachable,  ///< no way to that network
  TimedOut,     ///< no answer to the attempt
  NoServer,     ///< the server that is to be started cannot be
  Ended,        ///< closed or reset by the other side, or gone wrong
};

}  // namespace kelvane::sondrel
