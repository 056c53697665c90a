#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/rigctld/rigctld_receiver.h"
#include "components/sondrel/simulated/simulation_lists.h"

namespace kelvane::sondrel {

/// The keys of every receiver behind rigctld, whoever starts that.
inline constexpr std::array kRigctldTuningKeys{
    Parameter{"Minimum", "0", "lowest frequency, Hz; with a Maximum of 0 the server's own",
              checkWhole<0, 999'999'999>},
    Parameter{"Maximum", "0", "highest frequency, Hz; 0 for the server's own",
              checkWhole<0, 999'999'999>},
    Parameter{"PollRate", "25", "S-meter readings in a second, while the receiver is shown",
              checkWhole<1, 100>},
    Parameter{"LineShare", "60", "the most of the radio's line that polling may take, percent",
              checkWhole<5, 95>},
    Parameter{"SMeterOffset", "0", "added to the S-meter readings, dB", checkWhole<-200, 200>},
    Parameter{"BfoLimit", "5000", "most offset, Hz either way, of a BFO that is made by tuning",
              checkWhole<0, 20'000>},
    Parameter{"Preamp", "yes", "the HF filter button switches the preamplifier", checkYesNo},
    Parameter{"Remote", "yes", "comes up under remote control", checkYesNo},
    Parameter{"Channels", "0-99", "numbers of the channels that are kept here, or none",
              checkChannels},
    Parameter{"ChannelSkip", "yes", "channels can be left out of a scan", checkYesNo},
};

/// A receiver behind the server there, with what its section says of the keys above. What is wrong
/// in the section is said in `notes`.
std::unique_ptr<Receiver> makeRigctldReceiver(ReceiverHost& host, const std::string& name,
                                              const RigctldAddress& address,
                                              const ParameterReader& read,
                                              std::vector<std::string>& notes);

}  // namespace kelvane::sondrel
