#include "components/sondrel/radios/radio_choice.h"

#include <algorithm>

#include "base/number.h"
#include "base/text.h"
#include "components/sondrel/drivers_model.h"

namespace kelvane::sondrel {

namespace {

Result<> checkTyped(const TypedRadio& typed, const std::string& device) {
  if (!typed.model) return Failure{"Choose the radio in the list."};
  const bool network = typed.facts.connection == ModelFacts::Connection::Network;
  const bool needsNone = typed.facts.connection == ModelFacts::Connection::None;
  if (device.empty() && network)
    return Failure{"Type where the radio is: its host and port, host:port."};
  if (device.empty() && !needsNone) return Failure{"Choose the port that the radio is at."};
  if (const Result<> checked = checkDevice(device); !checked)
    return Failure{"The port " + checked.reason() + "."};
  const auto speed = wholeNumber(typed.speed);
  const bool speedFits = speed && *speed > 0 && *speed <= 10'000'000;
  if (!trimmed(typed.speed).empty() && !speedFits)
    return Failure{"The speed is no number of baud."};
  if (trimmed(typed.civ).empty() || typed.facts.civ < 0) return {};
  const Result<> checked = checkCiv(typed.civ);
  if (!checked) return Failure{"The address " + checked.reason() + "."};
  return {};
}

}  // namespace

Result<ReceiverEntry> chosenRadio(const TypedRadio& typed, const std::vector<SerialPort>& ports,
                                  const std::vector<ReceiverEntry>& receivers) {
  const std::string device = portMeant(typed.device, ports);
  if (const Result<> checked = checkTyped(typed, device); !checked) return checked.failure();
  if (const auto who = whoHasDevice(receivers, device); !who.empty())
    return Failure{device + " is the port of " + who + " already."};
  ReceiverEntry entry;
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
  return entry;
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
