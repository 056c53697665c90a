#include "components/sondrel/radios/radio_kind.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/loopback_port.h"
#include "base/text.h"
#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/radios/radio_faults.h"
#include "components/sondrel/radios/server_program.h"
#include "components/sondrel/rigctld/rigctld_kind.h"
#include "components/sondrel/sharing/share_setup.h"

namespace kelvane::sondrel {

namespace {

constexpr std::array kOwnKeys{
    Parameter{"Model", "0", "rigctld's number of the radio's model", checkWhole<0, 99'999'999>},
    Parameter{"Device", "", "the port that the radio is at (COM5), or its host:port", checkDevice},
    Parameter{"Speed", "0", "of the port, baud; 0 for the model's usual one",
              checkWhole<0, 10'000'000>},
    Parameter{"Civ", "", "address of an Icom radio as it shows it (94h); empty for the usual one",
              checkCiv},
    Parameter{"Options", "", "more words for rigctld, after all others", checkOptions},
    Parameter{"Program", "", "the rigctld to use, with its folder; empty for the one that is found",
              checkDevice},
};

constexpr auto radioKeys() {
  std::array<Parameter, kOwnKeys.size() + kRigctldTuningKeys.size()> all{};
  std::ranges::copy(kRigctldTuningKeys, std::ranges::copy(kOwnKeys, all.begin()).out);
  return all;
}
constexpr auto kRadioKeys = withSharing(radioKeys());

RadioSetup setupIn(const ParameterReader& read) {
  RadioSetup setup;
  setup.model = read.whole("Model");
  setup.device = trimmed(read.text("Device"));
  setup.speed = read.whole("Speed");
  setup.civ = read.text("Civ");
  setup.options = read.text("Options");
  setup.program = read.text("Program");
  return setup;
}

std::string programText(const std::filesystem::path& path) {
  const auto text = path.u8string();
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

class RadioServer final : public OwnServer {
 public:
  explicit RadioServer(RadioSetup setup) : setup_(std::move(setup)) {}

  Result<Start> prepare() override {
    if (const Result<> checked = checkSetup(setup_); !checked) return checked.failure();
    std::string program = setup_.program;
    if (program.empty()) {
      const auto found = serverPrograms(programPlaces(), shownRigctld());
      if (found.empty()) return Failure{noServerProgramWords()};
      program = programText(found.front());
    }
    const std::int32_t port = freeLoopbackPort();
    return Start{serverCommand(setup_, program, port), port};
  }
  std::string fault(std::string_view written) const override { return radioFault(setup_, written); }

  std::string silence() const override { return radioGoneWords(setup_); }

 private:
  const RadioSetup setup_;
};

RigctldAddress radioAddress(const ParameterReader& read) {
  RigctldAddress address{"127.0.0.1", 0};
  address.own = serverOf(setupIn(read));
  return address;
}

std::unique_ptr<Receiver> makeRadio(ReceiverHost& host, const ReceiverEntry& entry,
                                    std::vector<std::string>& notes) {
  const ParameterReader read(radioKind(), entry, notes);
  if (read.whole("Model") == 0)
    notes.push_back(entry.name + ": Model is missing, so that nothing can be started for it.");
  return makeRigctldReceiver(host, entry.name, radioAddress(read), read, notes);
}

std::unique_ptr<LinkTrial> tryRadio(const ReceiverEntry& entry) {
  std::vector<std::string> notes;
  const ParameterReader read(radioKind(), entry, notes);
  return tryOutRigctld(radioAddress(read), {});
}

constexpr ReceiverKind kRadioKind{"radio", "a radio whose rigctld is found, started and ended here",
                                  kRadioKeys, makeRadio, tryRadio};

}  // namespace

const ReceiverKind& radioKind() { return kRadioKind; }

std::shared_ptr<OwnServer> serverOf(const RadioSetup& setup) {
  return std::make_shared<RadioServer>(setup);
}

RadioSetup setupOf(const ReceiverEntry& entry) {
  std::vector<std::string> notes;
  return setupIn(ParameterReader(radioKind(), entry, notes));
}

}  // namespace kelvane::sondrel
