#include "components/sondrel/sharing/share_setup.h"

#include <algorithm>
#include <chrono>
#include <string_view>

#include "base/net_filter.h"
#include "base/text.h"
#include "components/sondrel/parameter_checks.h"

namespace kelvane::sondrel {

Result<> checkShare(std::string_view text) {
  for (const std::string_view word : {"off", "look", "tune"}) {
    if (equalIgnoringCase(word, text)) return {};
  }
  return Failure{"must be off, look or tune"};
}

Result<> checkSharePort(std::string_view text) { return checkWhole<0, 65'535>(text); }

Result<> checkShareHold(std::string_view text) { return checkWhole<0, 300>(text); }

Result<> checkShareAddress(std::string_view text) {
  if (numericAddress(std::string(text), 0)) return {};
  return Failure{"is no address in numbers (192.168.1.5)"};
}

Result<> checkShareFrom(std::string_view text) {
  if (isNetList(text)) return {};
  return Failure{"must be addresses in numbers (192.168.1.7 192.168.2.0/24)"};
}

ShareSetup readShare(const ReceiverEntry& entry, std::vector<std::string>& notes) {
  const ReceiverKind* kind = receiverKind(entry.kind);
  const ParameterReader read(kind ? *kind : receiverKinds().front(), entry, notes);
  ShareSetup setup;
  const std::string_view share = read.text("Share");
  setup.shared = !equalIgnoringCase(share, "off");
  if (equalIgnoringCase(share, "tune")) setup.permission = SharePermission::Tune;
  setup.port = static_cast<std::uint16_t>(read.whole("SharePort"));
  setup.hold = std::chrono::seconds(read.whole("ShareHold"));
  setup.address = read.text("ShareAddress");
  setup.from = read.text("ShareFrom");
  return setup;
}

ReceiverEntry withoutSharing(ReceiverEntry entry) {
  std::erase_if(entry.settings, [](const auto& setting) {
    return std::ranges::any_of(kShareParameters, [&](const Parameter& parameter) {
      return equalIgnoringCase(parameter.key, setting.first);
    });
  });
  return entry;
}

}  // namespace kelvane::sondrel
