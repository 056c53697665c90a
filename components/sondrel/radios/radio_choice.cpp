#include "components/sondrel/radios/radio_choice.h"

#include <algorithm>

#include "base/number.h"
#include "base/text.h"
#include "components/sondrel/drivers_model.h"

namespace kelvane::sondrel {

namespace {

std::string typedProblem(const TypedRadio& typed, const std::string& device) {
  if (!typed.model) return "Choose the radio in the list.";
  const bool network = typed.facts.connection == ModelFacts::Connection::Network;
  const bool needsNone = typed.facts.connection == ModelFacts::Connection::None;
  if (device.empty() && network) return "Type where the radio is: its host and port, host:port.";
  if (device.empty() && !needsNone) return "Choose the port that the radio is at.";
  if (const auto problem = deviceProblem(device); !problem.empty())
    return "The port " + problem + ".";
  const auto speed = wholeNumber(typed.speed);
  const bool speedFits = speed && *speed > 0 && *speed <= 10'000'000;
  if (!trimmed(typed.speed).empty() && !speedFits) return "The speed is no number of baud.";
  if (trimmed(typed.civ).empty() || typed.facts.civ < 0) return {};
  const auto problem = civProblem(typed.civ);
  return problem.empty() ? problem : "The address " + problem + ".";
}

}  // namespace

RadioChoice chosenRadio(const TypedRadio& typed, const std::vector<SerialPort>& ports,
                        const std::vector<ReceiverEntry>& receivers) {
  const std::string device = portMeant(typed.device, ports);
  RadioChoice choice{{}, typedProblem(typed, device)};
  if (!choice.problem.empty()) return choice;
  if (const auto who = whoHasDevice(receivers, device); !who.empty()) {
    choice.problem = device + " is the port of " + who + " already.";
    return choice;
  }
  ReceiverEntry& entry = choice.entry;
  entry.kind = "radio";
  entry.name = trimmed(typed.name);
  if (entry.name.empty()) entry.name = typed.model->name;
  entry.set("Model", std::to_string(typed.model->number));
  if (!device.empty()) entry.set("Device", device);
  const bool serial = !device.empty() && !isNetworkDevice(device);
  if (serial && !trimmed(typed.speed).empty())
    entry.set("Speed", std::string(trimmed(typed.speed)));
  const int civ = civAddress(typed.civ);
  if (typed.facts.civ >= 0 && civ >= 0 && civ != typed.facts.civ) entry.set("Civ", civText(civ));
  if (serial && typed.handshake && typed.facts.handshake)
    entry.set("Options", "-C serial_handshake=Hardware");
  return choice;
}

std::string portMeant(std::string_view text, const std::vector<SerialPort>& ports) {
  text = trimmed(text);
  const auto meant = [text](const SerialPort& port) {
    return equalIgnoringCase(text, port.name) || equalIgnoringCase(text, port.words) ||
           text == portOffer(port);
  };
  const auto found = std::ranges::find_if(ports, meant);
  return found == ports.end() ? std::string(text) : found->name;
}

std::string portOffer(const SerialPort& port) {
  std::string words = port.words;
  const std::string behind = " (" + port.name + ")";
  if (words.ends_with(behind)) words.resize(words.size() - behind.size());
  return words.empty() || words == port.name ? port.name : port.name + ": " + words;
}

std::int32_t likelySpeed(const ModelFacts& facts) {
  const auto speeds = speedsOf(facts);
  // Radios on Icom's bus find the speed themselves up to this one, as they come.
  constexpr std::int32_t kBusSpeed = 19'200;
  const bool bus = facts.civ >= 0 && std::ranges::find(speeds, kBusSpeed) != speeds.end();
  return bus ? kBusSpeed : speeds.front();
}

std::string civText(int address) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[address / 16 % 16], kDigits[address % 16], 'h'};
}

}  // namespace kelvane::sondrel
