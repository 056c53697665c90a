#include "components/sondrel/radios/radio_faults.h"

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

enum class Hint { PortMissing, PortTaken, Silent, NoModel, Options, Refused, Protocol };

struct HintWords {
  std::string_view written;  ///< in capital letters
  Hint hint;
};

/// What rigctld writes of its troubles. The end of its words names the port and "no such file"
/// whatever happened, so that says nothing.
constexpr HintWords kHints[] = {
    {"DOES NOT EXIST", Hint::PortMissing},
    {"UNABLE TO OPEN", Hint::PortMissing},
    {"PERMISSION DENIED", Hint::PortTaken},
    {"ACCESS IS DENIED", Hint::PortTaken},
    {"RESOURCE BUSY", Hint::PortTaken},
    {"COMMUNICATION TIMED OUT", Hint::Silent},
    {"TIMED OUT", Hint::Silent},
    {"UNKNOWN RIG NUM", Hint::NoModel},
    {"UNKNOWN OPTION", Hint::Options},
    {"UNRECOGNIZED OPTION", Hint::Options},
    {"INVALID CONFIGURATION", Hint::Options},
    {"FAILED TO CONNECT", Hint::Refused},
    {"CONNECTION REFUSED", Hint::Refused},
    {"PROTOCOL ERROR", Hint::Protocol},
    {"COMMAND REJECTED", Hint::Protocol},
};

std::string portOf(const RadioSetup& setup) {
  return setup.device.empty() ? std::string("The port") : setup.device;
}

std::string hintWords(const RadioSetup& setup, Hint hint) {
  const std::string model = "model " + std::to_string(setup.model);
  switch (hint) {
    case Hint::PortMissing:
      return portMissingWords(setup);
    case Hint::PortTaken:
      return portOf(setup) + " is used by another program.";
    case Hint::Silent:
      return radioSilentWords(setup);
    case Hint::NoModel:
      return "This rigctld has no " + model + ". Choose the radio anew.";
    case Hint::Options:
      return "rigctld does not take these Options or this Speed.";
    case Hint::Refused:
      return "Nobody answers at " + portOf(setup) + ".";
    case Hint::Protocol:
      break;
  }
  return "What answers at " + portOf(setup) + " is no radio of " + model + ".";
}

}  // namespace

std::string portMissingWords(const RadioSetup& setup) {
  return portOf(setup) + " is not there: is the cable plugged in?";
}

std::string radioSilentWords(const RadioSetup& setup) {
  if (isNetworkDevice(setup.device)) return "The radio does not answer at " + setup.device + ".";
  const std::string at = setup.speed > 0 ? " at " + std::to_string(setup.speed) : std::string();
  return "The radio does not answer" + at + ". Is it switched on, and is this its speed?";
}

std::string radioGoneWords(const RadioSetup& setup) {
  if (isNetworkDevice(setup.device)) return radioSilentWords(setup);
  const std::string who = setup.device.empty() ? std::string("The radio") : setup.device;
  return who + " does not answer. Is the cable plugged in, and the radio switched on?";
}

std::string radioFault(const RadioSetup& setup, std::string_view written) {
  const std::string letters = upper(written);
  const HintWords* newest = nullptr;
  std::size_t place = 0;
  for (const HintWords& hint : kHints) {
    const auto found = letters.rfind(hint.written);
    if (found == letters.npos || (newest && found <= place)) continue;
    newest = &hint;
    place = found;
  }
  return newest ? hintWords(setup, newest->hint) : std::string();
}

}  // namespace kelvane::sondrel
