#pragma once

#include <optional>
#include <string>
#include <vector>

#include "components/sondrel/rigctld/rigctld_bfo.h"
#include "components/sondrel/rigctld/rigctld_commands.h"

namespace kelvane::sondrel {

/// Requests that wait for their turn: in the order in which they came, one for each item.
class RequestBox {
 public:
  /// Takes the place, in the row as well, of one that waits for the same item.
  void put(RigRequest request);
  std::optional<RigRequest> take();
  bool waits(RigItem item) const;
  bool empty() const { return requests_.empty(); }
  void clear() { requests_.clear(); }

 private:
  std::vector<RigRequest> requests_;
};

/// What a request comes to at the radio.
struct RigOrder {
  RigRequest request;
  RigItem reads = RigItem::Frequency;  ///< the item whose reading shows what came of it
  std::int32_t wanted = 0;  ///< the number that was sent, as the radio counts; for Mode the width
  std::string wantedMode;   ///< for Mode and Filter
  RigCommand command;
};

/// What is known of the radio when a request is made into an order.
struct RigSituation {
  std::string mode;              ///< the radio's present mode; empty unknown
  std::int32_t offset = 0;       ///< the frequency shown less the radio's own, Hz
  std::int32_t offsetLimit = 0;  ///< most tuning offset that stands for a BFO, Hz
};

/// Makes a request into a command that the radio can be trusted with: every number limited to its
/// ranges and lists. None where the radio has no such setting or mode. A BFO that works by offset
/// is no order.
std::optional<RigOrder> orderFor(const RigRequest& request, const RigctldCapabilities& can,
                                 const RigSituation& situation, const RigctldCommands& commands);

}  // namespace kelvane::sondrel
