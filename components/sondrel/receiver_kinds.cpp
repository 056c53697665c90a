#include <array>

#include "components/sondrel/simulation.h"

namespace kelvane::sondrel {

std::span<const ReceiverKind> receiverKinds() {
  static const std::array kinds{simulatedKind()};
  return kinds;
}

}  // namespace kelvane::sondrel
