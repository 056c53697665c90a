#include "components/sondrel/sharing/share_setup.h"

#include <algorithm>

#include "base/net_filter.h"
#include "base/text.h"
#include "components/sondrel/parameter_checks.h"

namespace kelvane::sondrel {

std::string shareProblem(std::string_view text) {
  for (const std::string_view word : {"off", "look", "tune"}) {
    if (equalIgnoringCase(word, text)) return {};
  }
  return "must be off, look or tune";
}

std::string sharePortProblem(std::string_view text) { return wholeProblem<0, 65'535>(text); }

std::string shareHoldProblem(std::string_view text) { return wholeProblem<0, 300>(text); }

std::string shareAddressProblem(std::string_view text) {
  return numericAddress(std::string(text), 0) ? "" : "is no address in numbers (192.168.1.5)";
}

std::string shareFromProblem(std::string_view text) {
  return isNetList(text) ? "" : "must be addresses in numbers (192.168.1.7 192.168.2.0/24)";
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
