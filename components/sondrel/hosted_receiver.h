#pragma once

#include <algorithm>
#include <memory>

#include "components/sondrel/channels/receiver_channels.h"
#include "components/sondrel/key_pairs.h"
#include "components/sondrel/receiver.h"
#include "components/sondrel/receiver_entry.h"

namespace kelvane::sondrel {

/// A receiver with all that the core keeps for it.
struct HostedReceiver {
  ReceiverEntry entry;
  std::unique_ptr<Receiver> receiver;
  std::unique_ptr<ReceiverChannels> channels;
  KeyPairs keys;

  void tick(Instant now) {
    receiver->tick(now);
    channels->tick(now);
  }
  Instant nextDue() const {
    return std::min({receiver->nextDue(), receiver->settleDue(), channels->nextDue()});
  }
};

}  // namespace kelvane::sondrel
