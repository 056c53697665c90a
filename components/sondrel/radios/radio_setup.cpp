#include "components/sondrel/radios/radio_setup.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kLongestDevice = 200;
constexpr std::size_t kLongestOptions = 1000;

/// The settings of the serial line's signals, but those that the options set themselves.
std::string lineSignals(std::string_view options) {
  const auto free = [&](std::string_view key) { return options.find(key) == options.npos; };
  std::string words = "ptt_type=None";
  // A line that stands for the handshake cannot be held low, and one that is held is no handshake.
  if (free("serial_handshake") && free("rts_state"))
    words += ",serial_handshake=None,rts_state=OFF";
  if (free("dtr_state")) words += ",dtr_state=OFF";
  return words;
}

std::string_view bareDevice(std::string_view device) {
  device = trimmed(device);
  if (device.starts_with("\\\\.\\")) device.remove_prefix(4);
  return device;
}

}  // namespace

std::string quotedWord(std::string_view word) {
  if (!word.empty() && word.find_first_of(" \t\"") == word.npos) return std::string(word);
  std::string quoted = "\"";
  std::size_t backslashes = 0;
  for (const char c : word) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  quoted.append(backslashes, '\\');
  return quoted + '"';
}

std::string serverCommand(const RadioSetup& setup, std::string_view program, std::int32_t port) {
  // Always in quotes: the program's name must not be taken for a shorter one.
  std::string line = "\"" + std::string(program) + "\" -m " + std::to_string(setup.model);
  if (!setup.device.empty()) line += " -r " + quotedWord(setup.device);
  const bool serial = !setup.device.empty() && !isNetworkDevice(setup.device);
  if (serial && setup.speed > 0) line += " -s " + std::to_string(setup.speed);
  if (const int civ = civAddress(setup.civ); civ >= 0) line += " -c " + std::to_string(civ);
  line += " -T 127.0.0.1 -t " + std::to_string(port);
  line += serial ? " -C " + lineSignals(setup.options) : std::string();
  if (!trimmed(setup.options).empty()) line += " " + std::string(trimmed(setup.options));
  return line;
}

Result<> checkSetup(const RadioSetup& setup) {
  if (setup.model == 0) return Failure{"No model is chosen for this radio."};
  return {};
}

bool isNetworkDevice(std::string_view device) {
  const auto colon = bareDevice(device).rfind(':');
  return colon != device.npos && colon > 0 && device.front() != '/';
}

bool sameDevice(std::string_view a, std::string_view b) {
  return equalIgnoringCase(bareDevice(a), bareDevice(b));
}

Result<> checkDevice(std::string_view text) {
  if (text.size() > kLongestDevice) return Failure{"is longer than 200 characters"};
  if (text.find('"') == text.npos) return {};
  return Failure{"holds a quotation mark"};
}

Result<> checkOptions(std::string_view text) {
  if (text.size() > kLongestOptions) return Failure{"is longer than 1000 characters"};
  if (std::ranges::count(text, '"') % 2 == 0) return {};
  return Failure{"has a quote that is not closed"};
}

int civAddress(std::string_view text) {
  text = trimmed(text);
  const bool prefixed = text.starts_with("0x") || text.starts_with("0X");
  if (!prefixed && !text.ends_with('h') && !text.ends_with('H')) return -1;
  text = prefixed ? text.substr(2) : text.substr(0, text.size() - 1);
  int value = -1;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value, 16);
  return read.ec == std::errc() && read.ptr == end && value >= 0 && value < 256 ? value : -1;
}

Result<> checkCiv(std::string_view text) {
  if (civAddress(text) >= 0) return {};
  return Failure{"must be written as the radio shows it, like 94h"};
}

}  // namespace kelvane::sondrel
