#include "components/sondrel/config/receiver_config.h"
#include "tests/fuzz/fuzz_target.h"

// receivers.txt: what is written is read back the same, and nothing of a file is lost.
FUZZ_TARGET(receivers) {
  using namespace kelvane;
  using namespace kelvane::sondrel;
  const auto config = readConfig(input);
  if (!config) return;
  fuzz::promise(config->receivers.size() <= 8, "more than eight receivers are served");
  const std::string text = writeConfig(*config);
  const auto again = readConfig(text);
  fuzz::promise(again.has_value(), "what was written cannot be read");
  fuzz::promise(again->receivers == config->receivers && again->beyond == config->beyond,
                "the receivers are others after writing");
  fuzz::promise(writeConfig(*again) == text, "it is written in another way the second time");
}
