#include "tests/fakes/row_play.h"
#include "tests/fuzz/fuzz_target.h"

FUZZ_TARGET(frq_digit) {
  using namespace kelvane;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.data());
  const std::string wrong = fakes::RowPlay().play({bytes, input.size()});
  fuzz::promise(wrong.empty(), wrong);
}
