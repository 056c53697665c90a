#include "tests/fakes/session_storm.h"
#include "tests/fuzz/fuzz_target.h"

FUZZ_TARGET(rigctld_session) {
  using namespace kelvane;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.data());
  const std::string wrong = fakes::SessionStorm().play({bytes, input.size()});
  fuzz::promise(wrong.empty(), wrong);
}
