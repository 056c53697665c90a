#include "components/sondrel/rigctld/rigctld_words.h"

#include <utility>
#include <vector>

#include "base/number.h"

namespace kelvane::sondrel {

namespace {

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

std::string decibels(const std::vector<std::int32_t>& list) {
  std::string text;
  for (const auto step : list) text += (text.empty() ? " (" : ", ") + std::to_string(step);
  return text.empty() ? text : text + " dB)";
}

std::string levels(const std::vector<AgcLevel>& list) {
  std::vector<std::string> names;
  for (const auto& level : list) names.push_back(level.name);
  return names.empty() ? std::string() : " (" + joined(names) + ")";
}

std::string kilohertz(std::int32_t hertz) { return decimalText(hertz / 1000.0); }

/// The version without the day and the fingerprint of its making.
std::string shortVersion(const std::string& version) {
  const auto first = version.find(' ');
  return first == std::string::npos ? version : version.substr(0, version.find(' ', first + 1));
}

std::string modelLine(const RigctldCapabilities& can) {
  std::string line = can.model.empty() ? "A server that tells no model" : can.model;
  // The small servers give the number of a model that they are not.
  if (can.dialect == Dialect::Extended) line += ", model number " + std::to_string(can.modelNumber);
  if (!can.version.empty()) line += ", " + shortVersion(can.version);
  return line;
}

std::string rangeLine(const RigctldCapabilities& can) {
  if (can.ranges.empty()) return "not told; Minimum and Maximum can be set here";
  return kilohertz(can.lowestFrequency()) + " to " + kilohertz(can.highestFrequency()) + " kHz";
}

struct Ability {
  std::string words;
  bool there;
};

std::vector<Ability> abilities(const RigctldCapabilities& can) {
  const auto reads = [&](RigItem item) { return can.readable.has(item); };
  const auto both = [&](RigItem item) { return reads(item) && can.settable.has(item); };
  const bool squelch = reads(RigItem::Squelch) || reads(RigItem::SquelchLevel);
  const auto attenuators = both(RigItem::Attenuator) ? decibels(can.attenuators) : std::string();
  const auto preamps = both(RigItem::Preamp) ? decibels(can.preamps) : std::string();
  const auto agc = both(RigItem::Agc) ? levels(can.agcLevels) : std::string();
  return {{"telling its frequency", reads(RigItem::Frequency)},
          {"telling its mode", reads(RigItem::Mode)},
          {"S-meter", reads(RigItem::Strength)},
          {"squelch", squelch},
          {"AGC" + agc, both(RigItem::Agc)},
          {"attenuator" + attenuators, both(RigItem::Attenuator)},
          {"preamplifier" + preamps, both(RigItem::Preamp)},
          {"noise blanker", both(RigItem::Blanker)},
          {"CW pitch", both(RigItem::Pitch)},
          {"IF shift", both(RigItem::Shift)},
          {"clock", both(RigItem::Clock)}};
}

std::string abilityLine(const RigctldCapabilities& can, bool there) {
  std::vector<std::string> words;
  for (auto& ability : abilities(can)) {
    if (ability.there == there) words.push_back(std::move(ability.words));
  }
  return words.empty() ? "nothing" : joined(words);
}

}  // namespace

std::string inWords(const RigctldCapabilities& can) {
  return "Model: " + modelLine(can) + "\nDialect: " + std::string(dialectName(can.dialect)) +
         "\nRange: " + rangeLine(can) + "\nModes: " + joined(can.modes) +
         "\nHas: " + abilityLine(can, true) + "\nLacks: " + abilityLine(can, false);
}

std::string inWords(LinkState fault, const RigctldAddress& address) {
  const std::string place =
      address.own ? "its rigctld" : address.host + ", port " + std::to_string(address.port);
  switch (fault) {
    case LinkState::BadAddress:
      return "There is no such place as " + place + ". Look at Host and Port.";
    case LinkState::CannotOpen:
      return "Nobody listens at " + place + ". Is the server running, and is this its port?";
    case LinkState::NoLoop:
      return "There is no way to " + address.host + ". Look at the network.";
    case LinkState::Timeout:
      return place + " does not answer. Another program may hold it, or its radio is slow.";
    case LinkState::Configuration:
      return "The server cannot be started, or is configured wrongly. Look at Command.";
    case LinkState::BadIdentity:
      return "What answers at " + place + " is no such server, or has another Model.";
    case LinkState::NotResponding:
      return "The server at " + place + " answers, but its radio does not. Is it switched on?";
    default:
      return "The link to " + place +
             " broke: what answers there is no such server, or has an "
             "error.";
  }
}

}  // namespace kelvane::sondrel
