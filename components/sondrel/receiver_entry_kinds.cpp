#include <array>

#include "components/sondrel/radios/radio_kind.h"
#include "components/sondrel/rigctld/rigctld_receiver.h"
#include "components/sondrel/simulated/simulation.h"

namespace kelvane::sondrel {

std::span<const ReceiverKind> receiverKinds() {
  static const std::array kinds{simulatedKind(), rigctldKind(), radioKind()};
  return kinds;
}

}  // namespace kelvane::sondrel
