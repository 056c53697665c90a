#pragma once

#include <array>
#include <optional>

#include "components/sondrel/rigctld_capabilities.h"
#include "components/sondrel/rigctld_reply.h"

namespace kelvane::sondrel {

/// Judges a link and its radio by how readings go. The link stands and falls with one of them, the
/// heartbeat: a setting that cannot be read is no fault, and only not asked for any more.
class RigctldHealth {
 public:
  /// What a reading says of the link.
  struct Finding {
    std::optional<LinkState> link;  ///< nothing: it stays as it was
    bool ask = false;               ///< the heartbeat should be read at once
    bool drop = false;              ///< the connection is of no more use
  };

  /// The reading by which the link is judged; none where the radio can only be told.
  std::optional<RigItem> heartbeat(const RigctldCapabilities& can) const;
  /// What is worth polling.
  RigItems polled(const RigctldCapabilities& can) const;
  /// Radios refuse some settings in some modes.
  void modeChanged() { suspended_ = {}; }

  /// Takes the reply to a reading; `good` is whether it held a value, `up` whether the link is up.
  Finding judge(RigItem item, const Reply& reply, bool good, bool up,
                const RigctldCapabilities& can);

 private:
  Finding judgeHeartbeat(const Reply& reply, bool good, bool up);
  void judgeSetting(RigItem item, const Reply& reply, bool good);

  RigItems unreadable_;  ///< failed for good
  RigItems suspended_;   ///< refused in the present mode
  std::array<int, kRigItems> troubles_{};
  int heartbeatTroubles_ = 0;
};

}  // namespace kelvane::sondrel
