#include <array>

#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/rigctld_receiver.h"
#include "components/sondrel/simulation_lists.h"

namespace kelvane::sondrel {

namespace {

std::string hostProblem(std::string_view text) {
  // Whether such a host is there shows when the link is opened; a name that long never is.
  const bool blank = text.find_first_of(" \t") != std::string_view::npos;
  return blank || text.size() > 253 ? "is no host name or address" : std::string();
}

constexpr std::array kRigctldParameters{
    Parameter{"Host", "127.0.0.1", "name or address of the computer where the server runs",
              hostProblem},
    Parameter{"Port", "4532", "the server's TCP port", wholeProblem<0, 999'999>},
    Parameter{"Command", "", "starts the server on this computer and ends it again; none if empty"},
    Parameter{"Model", "0", "the only model number that is accepted; 0 for any",
              wholeProblem<0, 99'999'999>},
    Parameter{"Minimum", "0", "lowest frequency, Hz; with a Maximum of 0 the server's own",
              wholeProblem<0, 999'999'999>},
    Parameter{"Maximum", "0", "highest frequency, Hz; 0 for the server's own",
              wholeProblem<0, 999'999'999>},
    Parameter{"PollRate", "25", "S-meter readings in a second, while the receiver is shown",
              wholeProblem<1, 100>},
    Parameter{"LineShare", "60", "the most of the radio's line that polling may take, percent",
              wholeProblem<5, 95>},
    Parameter{"SMeterOffset", "0", "added to the S-meter readings, dB", wholeProblem<-200, 200>},
    Parameter{"BfoLimit", "5000", "most offset, Hz either way, of a BFO that is made by tuning",
              wholeProblem<0, 20'000>},
    Parameter{"Preamp", "yes", "the HF filter button switches the preamplifier", yesNoProblem},
    Parameter{"Remote", "yes", "comes up under remote control", yesNoProblem},
    Parameter{"Channels", "0-99", "numbers of the channels that are kept here, or none",
              channelsProblem},
    Parameter{"ChannelSkip", "yes", "channels can be left out of a scan", yesNoProblem},
};

RigctldAddress addressIn(const ParameterReader& read) {
  return {std::string(read.text("Host")), read.whole("Port"), std::string(read.text("Command"))};
}

RigctldOptions optionsIn(const ParameterReader& read) {
  RigctldOptions options;
  options.model = read.whole("Model");
  options.lowest = read.whole("Minimum");
  options.highest = read.whole("Maximum");
  options.bfoLimit = read.whole("BfoLimit");
  options.rates = {read.whole("PollRate") / 25.0, read.whole("LineShare") / 100.0};
  return options;
}

std::unique_ptr<Receiver> makeRigctld(ReceiverHost& host, const ReceiverEntry& entry,
                                      std::vector<std::string>& notes) {
  const ParameterReader read(rigctldKind(), entry, notes);
  RigctldSetup setup;
  setup.address = addressIn(read);
  setup.options = optionsIn(read);
  const auto channels = channelRange(read.text("Channels")).value_or(ChannelRange{});
  setup.manner = {read.whole("SMeterOffset"),
                  setup.options.bfoLimit,
                  read.yes("Preamp"),
                  channels.first,
                  channels.count,
                  read.yes("ChannelSkip")};
  setup.remote = read.yes("Remote");
  if (setup.options.highest != 0 && setup.options.highest <= setup.options.lowest) {
    notes.push_back(entry.name + ": Maximum is not above Minimum, so neither is used.");
  }
  return std::make_unique<RigctldReceiver>(host, entry.name, setup);
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

}  // namespace kelvane::sondrel
