#include <array>

#include "base/text.h"
#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/sharing/share_setup.h"
#include "components/sondrel/simulated/simulated_receiver.h"
#include "components/sondrel/simulated/simulation.h"
#include "components/sondrel/simulated/simulation_lists.h"

namespace kelvane::sondrel {

namespace {

std::string textProblem(std::string_view text) {
  return text.size() <= 60 ? std::string() : "has more than 60 characters";
}

template <auto read>
std::string listProblem(std::string_view text, std::string_view form) {
  return read(text) ? std::string() : std::string(form);
}

std::string modesProblem(std::string_view text) {
  return listProblem<modeList>(text, "must be names of AM FM USB LSB CW RTTY FAX SAM DRM");
}
std::string filtersProblem(std::string_view text) {
  const auto filters = wholeList(text, 1, 1'000'000);
  return filters ? std::string() : "must be bandwidths from 1 to 1000000 Hz";
}
std::string bfoProblem(std::string_view text) {
  return listProblem<bfoRange>(text, "must be two limits from -100000 to 100000 Hz, or none");
}
std::string agcProblem(std::string_view text) {
  return listProblem<agcList>(text, "must be words of slow medium fast off, or none");
}
std::string attenuatorProblem(std::string_view text) {
  return listProblem<attenuatorList>(text, "must be steps from 0 to 120 dB, or none");
}
std::string refuseProblem(std::string_view text) {
  return listProblem<refusedList>(text,
                                  "must be words of frequency mode filter agc blanker attenuator "
                                  "bfo hffilter remote, or none");
}
std::string untoldProblem(std::string_view text) {
  return listProblem<untoldList>(text,
                                 "must be words of frequency mode filter agc blanker attenuator "
                                 "bfo hffilter meter squelch, or none");
}
std::string readProblem(std::string_view text) {
  return listProblem<channelReadingNamed>(text, "must be normal, stalls or never");
}
std::string faultProblem(std::string_view text) {
  if (wholeNumber(text) == static_cast<std::int64_t>(LinkState::Up)) {
    return "is the code of a link that is up";
  }
  return wholeProblem<0, 9999>(text);
}

constexpr auto kSimulatedParameters = withSharing(std::array{
    Parameter{"Type", "", "shown in the window's caption", textProblem},
    Parameter{"Minimum", "1", "lowest frequency, Hz", wholeProblem<0, 999'999'999>},
    Parameter{"Maximum", "29999999", "highest frequency, Hz", wholeProblem<1, 999'999'999>},
    Parameter{"FinestStep", "1", "finest tuning step, Hz", wholeProblem<1, 100'000>},
    Parameter{"LargestStep", "30000", "largest tuning step, Hz", wholeProblem<1, 1'000'000>},
    Parameter{"Step", "1000", "tuning step at the receiver, Hz", wholeProblem<1, 1'000'000>},
    Parameter{"Frequency", "7100000", "where it is at the start, Hz", wholeProblem<0, 999'999'999>},
    Parameter{"Modes", "AM FM USB LSB CW RTTY FAX SAM DRM", "modes that it has", modesProblem},
    Parameter{"Mode", "", "mode at the start; the first where none is given", modesProblem},
    Parameter{"Filters", "",
              "bandwidths in Hz, the same in every mode; else each mode's usual ones",
              filtersProblem},
    Parameter{"Bfo", "-5000 5000", "limits of the BFO, Hz, or none", bfoProblem},
    Parameter{"Agc", "slow medium fast", "AGC settings, or none", agcProblem},
    Parameter{"Blanker", "2", "levels of the noise blanker, 0 for none", wholeProblem<0, 9>},
    Parameter{"Attenuator", "0 10 20", "attenuator steps, dB, or none", attenuatorProblem},
    Parameter{"HfFilter", "yes", "has a preselector", yesNoProblem},
    Parameter{"Lines", "4", "auxiliary IO lines; negative where they can only be read",
              wholeProblem<-16, 16>},
    Parameter{"Channels", "0-99", "channel numbers, or none", channelsProblem},
    Parameter{"ChannelSkip", "yes", "channels can be left out of a scan", yesNoProblem},
    Parameter{"Gain", "0", "what its antenna gives more than the others' do, dB",
              wholeProblem<-100, 100>},
    Parameter{"Squelch", "-110", "squelch threshold, dBm", wholeProblem<-150, 0>},
    Parameter{"Remote", "yes", "comes up under remote control", yesNoProblem},
    Parameter{"LinkTime", "0", "time that opening the link takes, ms", wholeProblem<0, 60'000>},
    Parameter{"AnswerTime", "0", "time that each request takes, ms", wholeProblem<0, 60'000>},
    Parameter{"ChannelTime", "2", "time that reading one channel takes, ms",
              wholeProblem<0, 60'000>},
    Parameter{"Fault", "0", "state code in which opening the link ends, 999 to 1025; 0 for none",
              faultProblem},
    Parameter{"FaultHeals", "0", "attempts after which the fault is gone; 0 never",
              wholeProblem<0, 1'000'000>},
    Parameter{"Refuse", "none", "requests that are refused: frequency, mode, filter and so on",
              refuseProblem},
    Parameter{"Untold", "none", "what it has and never tells: frequency, meter and so on",
              untoldProblem},
    Parameter{"ChannelRead", "normal", "how reading the channels goes: normal, stalls or never",
              readProblem},
});

std::unique_ptr<Receiver> makeSimulated(ReceiverHost& host, const ReceiverEntry& entry,
                                        std::vector<std::string>& notes) {
  return std::make_unique<SimulatedReceiver>(host, entry.name, readSimulation(entry, notes));
}

constexpr ReceiverKind kSimulatedKind{"simulated",
                                      "a receiver that is only played, with a band of its own",
                                      kSimulatedParameters, makeSimulated};

}  // namespace

const ReceiverKind& simulatedKind() { return kSimulatedKind; }

}  // namespace kelvane::sondrel
