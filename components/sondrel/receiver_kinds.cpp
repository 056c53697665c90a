#include <array>

#include "components/sondrel/rigctld_receiver.h"
#include "components/sondrel/simulation.h"

namespace kelvane::sondrel {

std::span<const ReceiverKind> receiverKinds() {
  static const std::array kinds{simulatedKind(), rigctldKind()};
  return kinds;
}

}  // namespace kelvane::sondrel
