#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/sharing/share_setup.h"
#include "components/sondrel/simulated/simulated_receiver.h"
#include "components/sondrel/simulated/simulation.h"
#include "components/sondrel/simulated/simulation_lists.h"

namespace kelvane::sondrel {

namespace {

Result<> checkType(std::string_view text) {
  if (text.size() <= 60) return {};
  return Failure{"has more than 60 characters"};
}

template <auto read>
Result<> checkList(std::string_view text, std::string_view form) {
  if (read(text)) return {};
  return Failure{std::string(form)};
}

Result<> checkModes(std::string_view text) {
  return checkList<modeList>(text, "must be names of AM FM USB LSB CW RTTY FAX SAM DRM");
}
Result<> checkFilters(std::string_view text) {
  const auto filters = wholeList(text, 1, 1'000'000);
  if (filters) return {};
  return Failure{"must be bandwidths from 1 to 1000000 Hz"};
}
Result<> checkBfo(std::string_view text) {
  return checkList<bfoRange>(text, "must be two limits from -100000 to 100000 Hz, or none");
}
Result<> checkAgc(std::string_view text) {
  return checkList<agcList>(text, "must be words of slow medium fast off, or none");
}
Result<> checkAttenuator(std::string_view text) {
  return checkList<attenuatorList>(text, "must be steps from 0 to 120 dB, or none");
}
Result<> checkRefuse(std::string_view text) {
  return checkList<refusedList>(text,
                                "must be words of frequency mode filter agc blanker attenuator "
                                "bfo hffilter remote, or none");
}
Result<> checkUntold(std::string_view text) {
  return checkList<untoldList>(text,
                               "must be words of frequency mode filter agc blanker attenuator "
                               "bfo hffilter meter squelch, or none");
}
Result<> checkRead(std::string_view text) {
  return checkList<channelReadingNamed>(text, "must be normal, stalls or never");
}
Result<> checkFault(std::string_view text) {
  if (wholeNumber(text) == static_cast<std::int64_t>(LinkState::Up)) {
    return Failure{"is the code of a link that is up"};
  }
  return checkWhole<0, 9999>(text);
}

constexpr auto kSimulatedParameters = withSharing(std::array{
    Parameter{"Type", "", "shown in the window's caption", checkType},
    Parameter{"Minimum", "1", "lowest frequency, Hz", checkWhole<0, 999'999'999>},
    Parameter{"Maximum", "29999999", "highest frequency, Hz", checkWhole<1, 999'999'999>},
    Parameter{"FinestStep", "1", "finest tuning step, Hz", checkWhole<1, 100'000>},
    Parameter{"LargestStep", "30000", "largest tuning step, Hz", checkWhole<1, 1'000'000>},
    Parameter{"Step", "1000", "tuning step at the receiver, Hz", checkWhole<1, 1'000'000>},
    Parameter{"Frequency", "7100000", "where it is at the start, Hz", checkWhole<0, 999'999'999>},
    Parameter{"Modes", "AM FM USB LSB CW RTTY FAX SAM DRM", "modes that it has", checkModes},
    Parameter{"Mode", "", "mode at the start; the first where none is given", checkModes},
    Parameter{"Filters", "",
              "bandwidths in Hz, the same in every mode; else each mode's usual ones",
              checkFilters},
    Parameter{"Bfo", "-5000 5000", "limits of the BFO, Hz, or none", checkBfo},
    Parameter{"Agc", "slow medium fast", "AGC settings, or none", checkAgc},
    Parameter{"Blanker", "2", "levels of the noise blanker, 0 for none", checkWhole<0, 9>},
    Parameter{"Attenuator", "0 10 20", "attenuator steps, dB, or none", checkAttenuator},
    Parameter{"HfFilter", "yes", "has a preselector", checkYesNo},
    Parameter{"Lines", "4", "auxiliary IO lines; negative where they can only be read",
              checkWhole<-16, 16>},
    Parameter{"Channels", "0-99", "channel numbers, or none", checkChannels},
    Parameter{"ChannelSkip", "yes", "channels can be left out of a scan", checkYesNo},
    Parameter{"Gain", "0", "what its antenna gives more than the others' do, dB",
              checkWhole<-100, 100>},
    Parameter{"Squelch", "-110", "squelch threshold, dBm", checkWhole<-150, 0>},
    Parameter{"Remote", "yes", "comes up under remote control", checkYesNo},
    Parameter{"LinkTime", "0", "time that opening the link takes, ms", checkWhole<0, 60'000>},
    Parameter{"AnswerTime", "0", "time that each request takes, ms", checkWhole<0, 60'000>},
    Parameter{"ChannelTime", "2", "time that reading one channel takes, ms", checkWhole<0, 60'000>},
    Parameter{"Fault", "0", "state code in which opening the link ends, 999 to 1025; 0 for none",
              checkFault},
    Parameter{"FaultHeals", "0", "attempts after which the fault is gone; 0 never",
              checkWhole<0, 1'000'000>},
    Parameter{"Refuse", "none", "requests that are refused: frequency, mode, filter and so on",
              checkRefuse},
    Parameter{"Untold", "none", "what it has and never tells: frequency, meter and so on",
              checkUntold},
    Parameter{"ChannelRead", "normal", "how reading the channels goes: normal, stalls or never",
              checkRead},
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
