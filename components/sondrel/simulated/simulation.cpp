#include "components/sondrel/simulated/simulation.h"

#include <algorithm>

#include "base/text.h"
#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/simulated/simulation_lists.h"

namespace kelvane::sondrel {

namespace {

void readRange(const ParameterReader& keys, const std::string& name, Capabilities& can,
               std::vector<std::string>& notes) {
  can.minimum = keys.whole("Minimum");
  can.maximum = keys.whole("Maximum");
  if (can.maximum <= can.minimum) {
    notes.push_back(name + ": Maximum is not above Minimum; the range is 1 to 29999999 instead.");
    can.minimum = 1;
    can.maximum = 29'999'999;
  }
  can.finest = keys.whole("FinestStep");
  can.largestStep = keys.whole("LargestStep");
}

void readChannels(const ParameterReader& keys, Capabilities& can) {
  const auto channels = channelRange(keys.text("Channels"));
  if (!channels) return;
  can.firstChannel = channels->first;
  can.channelCount = channels->count;
  can.channelSkip = keys.yes("ChannelSkip");
}

void readBfo(const ParameterReader& keys, Capabilities& can) {
  const auto limits = bfoRange(keys.text("Bfo")).value_or(BfoRange{});
  can.bfoMinimum = limits.minimum;
  can.bfoMaximum = limits.maximum;
  if (can.hasBfo()) return;
  for (ModeChoice& mode : can.modes) mode.bfo = false;
}

void readModes(const ParameterReader& keys, Capabilities& can) {
  can.modes = modeList(keys.text("Modes")).value_or(std::vector<ModeChoice>{});
  const auto filters = wholeList(keys.text("Filters"), 1, 1'000'000);
  if (!filters || filters->empty()) return;
  for (ModeChoice& mode : can.modes) {
    mode.filters.assign(filters->begin(), filters->end());
    mode.usual = mode.filters[mode.filters.size() / 2];
  }
}

Capabilities readCapabilities(const ParameterReader& keys, const std::string& name,
                              std::vector<std::string>& notes) {
  Capabilities can;
  can.type = keys.text("Type");
  readRange(keys, name, can, notes);
  readModes(keys, can);
  readBfo(keys, can);
  can.agc = agcList(keys.text("Agc")).value_or(std::vector<Choice>{});
  can.blanker = blankerLevels(keys.whole("Blanker"));
  can.attenuator = attenuatorList(keys.text("Attenuator")).value_or(std::vector<Choice>{});
  can.hfFilter = keys.yes("HfFilter");
  can.lines = keys.whole("Lines");
  readChannels(keys, can);
  return can;
}

SimulatedFaults readFaults(const ParameterReader& keys) {
  SimulatedFaults faults;
  faults.code = keys.whole("Fault");
  faults.healsAfter = keys.whole("FaultHeals");
  faults.linkTime = milliseconds(keys.whole("LinkTime"));
  faults.answerTime = milliseconds(keys.whole("AnswerTime"));
  faults.channelTime = milliseconds(keys.whole("ChannelTime"));
  const RefusedList refused = refusedList(keys.text("Refuse")).value_or(RefusedList{});
  faults.refused = refused.items;
  faults.refusesRemote = refused.remote;
  faults.reading =
      channelReadingNamed(keys.text("ChannelRead")).value_or(SimulatedFaults::Reading::Normal);
  return faults;
}

}  // namespace

bool SimulatedFaults::refuses(Item item) const {
  return std::ranges::find(refused, item) != refused.end();
}

bool UntoldList::has(Item item) const { return std::ranges::find(items, item) != items.end(); }

Simulation readSimulation(const ReceiverEntry& entry, std::vector<std::string>& notes) {
  const ParameterReader keys(simulatedKind(), entry, notes);
  Simulation simulation;
  simulation.can = readCapabilities(keys, entry.name, notes);
  simulation.faults = readFaults(keys);
  simulation.frequency = simulation.can.nearestFrequency(keys.whole("Frequency"));
  const Setting mode = modeList(keys.text("Mode")).value_or(simulation.can.modes).front().value;
  simulation.mode = simulation.can.mode(mode) ? mode : simulation.can.modes.front().value;
  simulation.step = keys.whole("Step");
  simulation.gain = keys.whole("Gain");
  simulation.squelch = keys.whole("Squelch");
  simulation.remote = keys.yes("Remote");
  simulation.untold = untoldList(keys.text("Untold")).value_or(UntoldList{});
  return simulation;
}

}  // namespace kelvane::sondrel
