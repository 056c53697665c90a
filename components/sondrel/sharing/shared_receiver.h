#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/time.h"
#include "components/sondrel/capabilities.h"
#include "components/sondrel/items.h"

namespace kelvane::sondrel {

/// What other programs may do with a receiver.
enum class SharePermission { Look, Tune };

/// What changes seldom about a shared receiver.
struct SharedTraits {
  std::string name;
  Capabilities can;
  SharePermission permission = SharePermission::Look;
  /// How long the last known values are answered after the link was lost.
  milliseconds hold{30'000};

  bool operator==(const SharedTraits&) const = default;
};

/// What programs are told of a receiver, in the contract's numbers; values include what is on its
/// way to the radio.
struct SharedFacts {
  std::shared_ptr<const SharedTraits> traits;
  bool online = false;
  std::optional<Instant> lostAt{};  ///< none while it is online, or when it has never been
  Hz frequency = -1;
  Setting mode = -1;
  Hz filter = 0;
  Setting agc = -1;
  Setting blanker = -1;
  Setting attenuator = -1;
  std::optional<Long> level{};  ///< dBm
  bool squelchOpen = false;

  bool operator==(const SharedFacts&) const = default;
  /// Whether the values may be told: the link is up, or was until a moment ago.
  bool known(Instant now) const {
    return online || (lostAt && traits && now - *lostAt < traits->hold);
  }
};

/// What a program asked for: within what the receiver can do. With a mode comes the filter, 0 for
/// the mode's usual one.
struct ShareOrder {
  Item item = Item::Frequency;
  std::int32_t value = 0;
  Hz filter = 0;
  std::string client;  ///< who asked

  bool operator==(const ShareOrder&) const = default;
};

/// One receiver between the user-interface thread, which publishes what is known and carries orders
/// out, and the thread that serves other programs. An order is part of the facts from the moment it
/// is given until facts are published that were made with it.
class SharedReceiver {
 public:
  // For the thread that serves.

  SharedFacts facts() const;
  /// Takes the place of an order for the same item that waits. Answers whether somebody has to be
  /// told that orders wait.
  bool order(ShareOrder order);

  // For the user-interface thread.

  /// The orders that were not taken before, in the order in which they are to be carried out.
  std::vector<ShareOrder> takeOrders();
  /// Tells what holds now, after all orders that were taken.
  void publish(SharedFacts facts);

 private:
  struct Waiting {
    ShareOrder order;
    bool taken = false;
  };

  mutable std::mutex mutex_;
  SharedFacts facts_{.traits = std::make_shared<const SharedTraits>()};
  std::vector<Waiting> orders_;
};

}  // namespace kelvane::sondrel
