#include "components/sondrel/rigctld/rigctld_kind.h"

#include <algorithm>
#include <string_view>

#include "components/sondrel/sharing/share_setup.h"

namespace kelvane::sondrel {

namespace {

Result<> checkHost(std::string_view text) {
  // Whether such a host is there shows when the link is opened; a name that long never is.
  const bool blank = text.find_first_of(" \t") != std::string_view::npos;
  if (blank || text.size() > 253) return Failure{"is no host name or address"};
  return {};
}

constexpr std::array kServerKeys{
    Parameter{"Host", "127.0.0.1", "name or address of the computer where the server runs",
              checkHost},
    Parameter{"Port", "4532", "the server's TCP port", checkWhole<0, 999'999>},
    Parameter{"Command", "", "starts the server on this computer and ends it again; none if empty"},
    Parameter{"Model", "0", "the only model number that is accepted; 0 for any",
              checkWhole<0, 99'999'999>},
};

constexpr auto rigctldKeys() {
  std::array<Parameter, kServerKeys.size() + kRigctldTuningKeys.size()> all{};
  std::ranges::copy(kRigctldTuningKeys, std::ranges::copy(kServerKeys, all.begin()).out);
  return all;
}
constexpr auto kRigctldParameters = withSharing(rigctldKeys());

RigctldAddress addressIn(const ParameterReader& read) {
  return {std::string(read.text("Host")), read.whole("Port"), std::string(read.text("Command"))};
}

RigctldOptions tuningIn(const ParameterReader& read) {
  RigctldOptions options;
  options.lowest = read.whole("Minimum");
  options.highest = read.whole("Maximum");
  options.bfoLimit = read.whole("BfoLimit");
  options.rates = {read.whole("PollRate") / 25.0, read.whole("LineShare") / 100.0};
  return options;
}

RigctldOptions optionsIn(const ParameterReader& read) {
  RigctldOptions options = tuningIn(read);
  options.model = read.whole("Model");
  return options;
}

std::unique_ptr<Receiver> receiverWith(ReceiverHost& host, const std::string& name,
                                       const RigctldAddress& address, RigctldOptions options,
                                       const ParameterReader& read,
                                       std::vector<std::string>& notes) {
  RigctldSetup setup;
  setup.address = address;
  setup.options = options;
  const auto channels = channelRange(read.text("Channels")).value_or(ChannelRange{});
  setup.manner = {read.whole("SMeterOffset"),
                  setup.options.bfoLimit,
                  read.yes("Preamp"),
                  channels.first,
                  channels.count,
                  read.yes("ChannelSkip")};
  setup.remote = read.yes("Remote");
  if (setup.options.highest != 0 && setup.options.highest <= setup.options.lowest) {
    notes.push_back(name + ": Maximum is not above Minimum, so neither is used.");
  }
  return std::make_unique<RigctldReceiver>(host, name, setup);
}

std::unique_ptr<Receiver> makeRigctld(ReceiverHost& host, const ReceiverEntry& entry,
                                      std::vector<std::string>& notes) {
  const ParameterReader read(rigctldKind(), entry, notes);
  return receiverWith(host, entry.name, addressIn(read), optionsIn(read), read, notes);
}

std::unique_ptr<LinkTrial> tryOut(const ReceiverEntry& entry) {
  std::vector<std::string> notes;
  const ParameterReader read(rigctldKind(), entry, notes);
  return tryOutRigctld(addressIn(read), optionsIn(read));
}

constexpr ReceiverKind kRigctldKind{"rigctld",
                                    "a radio behind rigctld, or a program of the same protocol",
                                    kRigctldParameters, makeRigctld, tryOut};

}  // namespace

const ReceiverKind& rigctldKind() { return kRigctldKind; }

std::unique_ptr<Receiver> makeRigctldReceiver(ReceiverHost& host, const std::string& name,
                                              const RigctldAddress& address,
                                              const ParameterReader& read,
                                              std::vector<std::string>& notes) {
  return receiverWith(host, name, address, tuningIn(read), read, notes);
}

}  // namespace kelvane::sondrel
