#include "tests/fakes/share_storm.h"
#include "tests/fuzz/fuzz_target.h"

FUZZ_TARGET(share_session) {
  using namespace kelvane;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.data());
  const std::string wrong = fakes::ShareStorm().play({bytes, input.size()});
  fuzz::promise(wrong.empty(), wrong);
}
