#pragma once

#include <optional>

#include "components/sondrel/rigctld/rigctld_experience.h"

namespace kelvane::sondrel {

/// What the link's state is after an error that a server reported; none where the error says
/// nothing of the link, only that this command, or this value, cannot be had.
std::optional<LinkState> stateOfError(int report);

/// Whether the error says that there is no such command or value.
bool isUnsupported(int report);

/// The link's state after a reply without a value; none where the radio did answer.
std::optional<LinkState> troubleIn(const Reply& reply);

/// The reading by which a radio is judged; none where it can only be told.
std::optional<RigItem> heartbeatOf(const RigctldExperience& experience);

/// Judges a radio by the readings of its heartbeat alone: that a setting cannot be read says
/// nothing of the link.
class RigctldHealth {
 public:
  /// What a reading says of the link.
  struct Finding {
    std::optional<LinkState> link;  ///< nothing: it stays as it was
    bool ask = false;               ///< the heartbeat should be read at once
    bool drop = false;              ///< the connection is of no more use
  };

  /// Takes the reply to reading the heartbeat, which came after `took`; `good` is whether it held a
  /// value, `up` whether the link is up.
  Finding judge(const Reply& reply, bool good, bool up, milliseconds took);

 private:
  int failuresInARow_ = 0;
};

}  // namespace kelvane::sondrel
