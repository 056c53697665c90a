#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/time.h"
#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_reply.h"

namespace kelvane::sondrel {

/// What the radio behind one server was found to tell and to refuse. It outlives connections, so
/// that a radio that takes seconds to refuse a setting is not asked for it at each new one.
///
/// A refusal is never for good: a radio that was just switched on refuses what it tells a second
/// later. It is asked again soon at first, then less and less often, and seldom where it is slow.
class RigctldExperience {
 public:
  /// A new connection has found this server. What is known of another one is forgotten.
  void serverFound(const RigctldCapabilities& found, Instant now);

  /// The item to try next, the most important first; none where none is due. `anew`: also what was
  /// told on an older connection and not on this one yet.
  std::optional<RigItem> due(Instant now, bool anew) const;
  /// When due() may have something that was refused before; kNever where nothing was.
  Instant nextDue() const;

  bool tells(RigItem item) const { return known_[at(item)].tells; }
  /// All that the radio tells.
  RigItems told() const;

  /// The reply to reading an item came after `took`; `good` is whether it held a value.
  void answered(RigItem item, const Reply& reply, bool good, milliseconds took, Instant now);
  /// No reply came in `took`, or the server ended the connection over it.
  void unanswered(RigItem item, milliseconds took, Instant now);
  /// The radio turned out to be silent: what it did not tell just before says nothing of it.
  void radioIsSilent();
  /// The radio answered: what it did not tell just before counts.
  void radioAnswers() { lastRefusal_.reset(); }
  /// Radios refuse some settings in some modes.
  void modeChanged(Instant now);

 private:
  struct Known {
    bool asked = false;  ///< worth asking for at all
    bool tells = false;
    bool fresh = false;         ///< was asked for on this connection
    bool slow = false;          ///< refused, and that took long
    bool thisModeOnly = false;  ///< rejected as things stood
    int troubles = 0;           ///< replies without a value, one after the other
    milliseconds pause{0};      ///< between the last refusal and the next attempt
    Instant tryAt{};
  };
  struct Doubt {
    RigItem item;
    Known before;
  };

  void list(const RigctldCapabilities& found);
  void refused(Known& known, milliseconds took, Instant now);

  std::string server_;
  bool plain_ = false;
  std::array<Known, kRigItems> known_{};
  std::optional<Doubt> lastRefusal_;
};

}  // namespace kelvane::sondrel
