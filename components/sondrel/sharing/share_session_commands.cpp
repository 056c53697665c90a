// What each command of the protocol is, and what a receiver answers to it.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "base/number.h"
#include "base/text.h"
#include "components/sondrel/s_meter.h"
#include "components/sondrel/sharing/dump_state.h"
#include "components/sondrel/sharing/protocol_names.h"
#include "components/sondrel/sharing/share_reply.h"
#include "components/sondrel/sharing/share_session.h"

namespace kelvane::sondrel {

namespace {

constexpr std::string_view kVfo = "VFOA";

const Capabilities& can(const Asked& asked) { return asked.facts.traits->can; }

std::string_view argument(const Asked& asked, std::size_t i) { return asked.command.argument(i); }

bool asksForList(const Asked& asked) { return argument(asked, 0) == "?"; }

/// A number with decimals or an exponent ("7100000.000000"); none where the word is anything else.
std::optional<double> realNumber(std::string_view word) {
  if (!word.empty() && word.front() == '+') word.remove_prefix(1);
  double value = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

/// Why a program may not change the receiver now; Ok where it may.
RigStatus mayChange(const Asked& asked) {
  if (asked.facts.traits->permission == SharePermission::Look) return RigStatus::AccessDenied;
  return asked.facts.online ? RigStatus::Ok : RigStatus::TimedOut;
}

bool knowsWhereItIs(const Asked& asked) {
  return asked.facts.known(asked.now) && asked.facts.frequency >= 0;
}

/// Answers a labelled value.
template <class Value>
RigStatus answerValue(Asked& asked, std::string_view label, const Value& value) {
  asked.reply.value(label, value);
  return RigStatus::Ok;
}

/// Answers a line as it stands.
RigStatus answerLine(Asked& asked, std::string_view line) {
  asked.reply.bare(line);
  return RigStatus::Ok;
}

RigStatus ok(Asked&) { return RigStatus::Ok; }
RigStatus notAvailable(Asked&) { return RigStatus::NotAvailable; }

/// A switch that a receiver does not have is off, and stays so.
RigStatus offOnly(Asked& asked) {
  const std::string_view wanted =
      asked.command.arguments.empty() ? std::string_view() : asked.command.arguments.back();
  const auto number = realNumber(wanted);
  const bool off = number ? *number == 0 : equalIgnoringCase(wanted, "OFF");
  return off ? RigStatus::Ok : RigStatus::NotAvailable;
}

template <const std::string_view& label, const auto& value>
RigStatus fixedValue(Asked& asked) {
  return answerValue(asked, label, value);
}

// Frequency and mode.

RigStatus getFrequency(Asked& asked) {
  if (!knowsWhereItIs(asked)) return RigStatus::TimedOut;
  const bool split = asked.command.row->letter == 'i';
  return answerValue(asked, split ? "TX Frequency" : "Frequency", asked.facts.frequency);
}

RigStatus setFrequency(Asked& asked) {
  if (const RigStatus refused = mayChange(asked); refused != RigStatus::Ok) return refused;
  const auto hertz = realNumber(argument(asked, 0));
  if (!hertz) return RigStatus::Invalid;
  const double whole = std::round(*hertz);
  if (whole < can(asked).minimum || whole > can(asked).maximum) return RigStatus::Invalid;
  asked.orders.push_back({Item::Frequency, static_cast<Hz>(whole), 0, {}});
  return RigStatus::Ok;
}

RigStatus getMode(Asked& asked) {
  const std::string_view name = protocolMode(asked.facts.mode);
  if (!asked.facts.known(asked.now) || name.empty()) return RigStatus::TimedOut;
  const bool split = asked.command.row->letter == 'x';
  asked.reply.value(split ? "TX Mode" : "Mode", name);
  return answerValue(asked, split ? "TX Passband" : "Passband", asked.facts.filter);
}

RigStatus setMode(Asked& asked) {
  if (asksForList(asked)) return answerLine(asked, protocolModes(can(asked)));
  if (const RigStatus refused = mayChange(asked); refused != RigStatus::Ok) return refused;
  const auto mode = modeForName(can(asked), argument(asked, 0));
  const std::string_view width = argument(asked, 1);
  // Without a width the present one is kept, as with -1; 0 asks for the mode's usual one.
  const auto wanted = width.empty() ? std::optional(-1.0) : realNumber(width);
  if (!mode || !wanted || *wanted < -1 || *wanted > kHighestHz) return RigStatus::Invalid;
  const ModeChoice& choice = *can(asked).mode(*mode);
  const bool other = *mode != asked.facts.mode;
  if (other) asked.orders.push_back({Item::Mode, *mode, 0, {}});
  const Hz usual = other ? 0 : choice.usual;
  const Hz filter = *wanted > 0    ? can(asked).nearestFilter(*mode, nearestLong(*wanted))
                    : *wanted == 0 ? usual
                                   : 0;
  if (filter != 0 && (other || filter != asked.facts.filter)) {
    asked.orders.push_back({Item::Filter, filter, 0, {}});
  }
  return RigStatus::Ok;
}

// VFO, split, transmitting: a receiver has one VFO and never transmits.

RigStatus setVfo(Asked& asked) {
  if (asksForList(asked)) return answerLine(asked, asked.reply.extended() ? "VFOA" : "VFOA ");
  for (const std::string_view own : {"VFOA", "VFO", "currVFO", "Main", "MainA", "RX"}) {
    if (equalIgnoringCase(own, argument(asked, 0))) return RigStatus::Ok;
  }
  return isVfoName(argument(asked, 0)) ? RigStatus::NotAvailable : RigStatus::Invalid;
}

RigStatus checkVfo(Asked& asked) { return answerValue(asked, "ChkVFO", asked.vfoOption ? 1 : 0); }

RigStatus setVfoOption(Asked& asked) {
  const auto wanted = wholeNumber(argument(asked, 0));
  if (!wanted) return RigStatus::Invalid;
  asked.vfoOption = *wanted != 0;
  return RigStatus::Ok;
}

RigStatus getSplit(Asked& asked) {
  asked.reply.value("Split", 0);
  return answerValue(asked, "TX VFO", kVfo);
}

RigStatus setSplit(Asked& asked) {
  const auto split = wholeNumber(argument(asked, 0));
  if (!split) return RigStatus::Invalid;
  return *split == 0 ? RigStatus::Ok : RigStatus::NotAvailable;
}

RigStatus getVfoInfo(Asked& asked) {
  if (!knowsWhereItIs(asked)) return RigStatus::TimedOut;
  asked.reply.value("Freq", asked.facts.frequency);
  asked.reply.value("Mode", protocolMode(asked.facts.mode));
  asked.reply.value("Width", asked.facts.filter);
  asked.reply.value("Split", 0);
  return answerValue(asked, "SatMode", 0);
}

// Levels and functions.

RigStatus getLevel(Asked& asked) {
  const std::string_view name = argument(asked, 0);
  if (asksForList(asked)) return answerLine(asked, levelList(can(asked)));
  const bool attenuator = equalIgnoringCase(name, "ATT") && can(asked).attenuator.size() > 1;
  const bool agc = equalIgnoringCase(name, "AGC") && !agcLevelList(can(asked)).empty();
  const bool strength = equalIgnoringCase(name, "STRENGTH");
  if (!attenuator && !agc && !strength) return RigStatus::NotAvailable;
  if (!asked.facts.known(asked.now)) return RigStatus::TimedOut;
  // Before the first reading the meter rests.
  constexpr Long kNoLevelTold = -54;
  Long value = asked.facts.level ? *asked.facts.level - kS9 : kNoLevelTold;
  if (attenuator) value = auxOf(can(asked).attenuator, asked.facts.attenuator);
  if (agc) {
    const Choice* choice = choiceOf(can(asked).agc, asked.facts.agc);
    value = choice ? protocolAgc(choice->name).value_or(0) : 0;
  }
  return answerLine(asked, std::to_string(value));
}

RigStatus orderAttenuator(Asked& asked, double decibels) {
  const auto same = [decibels](const Choice& choice) { return choice.aux == decibels; };
  const auto found = std::ranges::find_if(can(asked).attenuator, same);
  if (found == can(asked).attenuator.end()) return RigStatus::Invalid;
  asked.orders.push_back({Item::Attenuator, found->value, 0, {}});
  return RigStatus::Ok;
}

RigStatus orderAgc(Asked& asked, double code) {
  const auto agc = agcForCode(can(asked), nearestLong(code));
  if (!agc) return RigStatus::Invalid;
  asked.orders.push_back({Item::Agc, *agc, 0, {}});
  return RigStatus::Ok;
}

RigStatus setLevel(Asked& asked) {
  const std::string_view name = argument(asked, 0);
  if (asksForList(asked)) return answerLine(asked, settableLevelList(can(asked)));
  const bool attenuator = equalIgnoringCase(name, "ATT") && can(asked).attenuator.size() > 1;
  const bool agc = equalIgnoringCase(name, "AGC") && !can(asked).agc.empty();
  if (!attenuator && !agc) return RigStatus::NotAvailable;
  if (const RigStatus refused = mayChange(asked); refused != RigStatus::Ok) return refused;
  const auto number = realNumber(argument(asked, 1));
  if (!number) return RigStatus::Invalid;
  return attenuator ? orderAttenuator(asked, *number) : orderAgc(asked, *number);
}

bool isBlanker(const Asked& asked) {
  return equalIgnoringCase(argument(asked, 0), "NB") && !can(asked).blanker.empty();
}

RigStatus getFunction(Asked& asked) {
  if (asksForList(asked)) return answerLine(asked, functionList(can(asked)));
  if (!isBlanker(asked)) return RigStatus::NotAvailable;
  if (!asked.facts.known(asked.now)) return RigStatus::TimedOut;
  return answerLine(asked, asked.facts.blanker > 0 ? "1" : "0");
}

RigStatus setFunction(Asked& asked) {
  if (asksForList(asked)) return answerLine(asked, functionList(can(asked)));
  const auto on = wholeNumber(argument(asked, 1));
  if (!on) return RigStatus::Invalid;
  if (!isBlanker(asked)) return *on == 0 ? RigStatus::Ok : RigStatus::NotAvailable;
  if (const RigStatus refused = mayChange(asked); refused != RigStatus::Ok) return refused;
  // Among several levels of the blanker "on" is the first.
  const std::vector<Choice>& levels = can(asked).blanker;
  const auto wanted = std::ranges::find_if(
      levels, [&](const Choice& choice) { return (choice.value > 0) == (*on != 0); });
  if (wanted == levels.end()) return RigStatus::NotAvailable;
  asked.orders.push_back({Item::Blanker, wanted->value, 0, {}});
  return RigStatus::Ok;
}

RigStatus getSquelch(Asked& asked) {
  if (!asked.facts.known(asked.now)) return RigStatus::TimedOut;
  return answerValue(asked, "DCD", asked.facts.squelchOpen ? 1 : 0);
}

RigStatus listOnly(Asked& asked) {
  return asksForList(asked) ? answerLine(asked, "") : RigStatus::NotAvailable;
}

// What the receiver is.

RigStatus getInfo(Asked& asked) {
  const SharedTraits& traits = *asked.facts.traits;
  return answerValue(asked, "Info",
                     traits.name + (traits.can.type.empty() ? "" : " " + traits.can.type));
}

RigStatus tellState(Asked& asked) {
  for (const std::string& line : dumpState(*asked.facts.traits)) asked.reply.bare(line);
  return RigStatus::Ok;
}

RigStatus tellAbilities(Asked& asked) {
  if (asked.command.bare && !asked.reply.extended()) {
    // Who leaves the backslash away asks whether somebody is there, and reads one line.
    return RigStatus::Ok;
  }
  for (const std::string& line : dumpCaps(*asked.facts.traits)) asked.reply.bare(line);
  return RigStatus::Ok;
}

std::string checksum(std::string_view text) {
  std::uint32_t crc = ~std::uint32_t{0};
  for (const char c : text) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320u : 0);
  }
  std::array<char, 16> hexadecimal;
  std::snprintf(hexadecimal.data(), hexadecimal.size(), "0x%08x", ~crc);
  return hexadecimal.data();
}

RigStatus getRigInfo(Asked& asked) {
  if (!knowsWhereItIs(asked)) return RigStatus::TimedOut;
  const SharedFacts& facts = asked.facts;
  const std::string state = "Freq=" + std::to_string(facts.frequency) +
                            " Mode=" + std::string(protocolMode(facts.mode)) +
                            " Width=" + std::to_string(facts.filter);
  std::string all;
  const auto line = [&](const std::string& text) {
    asked.reply.bare(text);
    all += text + "\n";
  };
  line("VFO=Main " + state + " RX=1 TX=0");
  line("VFO=Sub " + state + " RX=0 TX=0");
  line("Split=0 SatMode=0");
  line("Rig=" + facts.traits->name);
  line("App=Hamlib");
  line("Version=Kelvane");
  asked.reply.bare("CRC=" + checksum(all));
  return answerLine(asked, "");
}

RigStatus quit(Asked& asked) {
  asked.ended = true;
  return RigStatus::Ok;
}

constexpr std::string_view kPtt = "PTT", kRit = "RIT", kXit = "XIT", kStep = "Tuning Step",
                           kMemory = "Memory#", kLocked = "Locked", kPower = "Power Status",
                           kCache = "Timeout (msecs)", kVfoLabel = "VFO", kVfoList = "VFOs",
                           kTransceive = "Transceive", kOff = "OFF";
constexpr int kZero = 0, kOne = 1, kCacheTime = 500;

RigStatus setPower(Asked& asked) {
  // On it is; off is not for others.
  return wholeNumber(argument(asked, 0)) == 1 ? RigStatus::Ok : RigStatus::NotAvailable;
}

constexpr auto kGet = Closing::Value;
constexpr auto kSet = Closing::Status;

constexpr CommandRow kRows[] = {
    {'F', "set_freq", 1, kSet, setFrequency},
    {'f', "get_freq", 0, kGet, getFrequency},
    {'M', "set_mode", 2, kSet, setMode},
    {'m', "get_mode", 0, kGet, getMode},
    {'V', "set_vfo", 1, kSet, setVfo},
    {'v', "get_vfo", 0, kGet, fixedValue<kVfoLabel, kVfo>},
    {'S', "set_split_vfo", 2, kSet, setSplit},
    {'s', "get_split_vfo", 0, kGet, getSplit},
    {'I', "set_split_freq", 1, kSet, notAvailable},
    {'i', "get_split_freq", 0, kGet, getFrequency},
    {'X', "set_split_mode", 2, kSet, notAvailable},
    {'x', "get_split_mode", 0, kGet, getMode},
    {'K', "set_split_freq_mode", 3, kSet, notAvailable},
    {'k', "get_split_freq_mode", 0, kGet, notAvailable},
    {'T', "set_ptt", 1, kSet, offOnly},
    {'t', "get_ptt", 0, kGet, fixedValue<kPtt, kZero>},
    {'L', "set_level", 2, kSet, setLevel},
    {'l', "get_level", 1, kGet, getLevel},
    {'U', "set_func", 2, kSet, setFunction},
    {'u', "get_func", 1, kGet, getFunction},
    {'P', "set_parm", 2, kSet, listOnly},
    {'p', "get_parm", 1, kGet, listOnly},
    {'G', "vfo_op", 1, kSet, listOnly},
    {'g', "scan", 2, kSet, notAvailable},
    {'J', "set_rit", 1, kSet, offOnly},
    {'j', "get_rit", 0, kGet, fixedValue<kRit, kZero>},
    {'Z', "set_xit", 1, kSet, offOnly},
    {'z', "get_xit", 0, kGet, fixedValue<kXit, kZero>},
    {'N', "set_ts", 1, kSet, notAvailable},
    {'n', "get_ts", 0, kGet, fixedValue<kStep, kZero>},
    {'E', "set_mem", 1, kSet, notAvailable},
    {'e', "get_mem", 0, kGet, fixedValue<kMemory, kZero>},
    {'A', "set_trn", 1, kSet, offOnly},
    {'a', "get_trn", 0, kGet, fixedValue<kTransceive, kOff>},
    {'Y', "set_ant", 2, kSet, notAvailable},
    {'y', "get_ant", 1, kGet, notAvailable},
    {'H', "set_channel", kRestOfLine, kSet, notAvailable},
    {'h', "get_channel", kRestOfLine, kSet, notAvailable},
    {'B', "set_bank", 1, kSet, notAvailable},
    {'b', "send_morse", kRestOfLine, kSet, notAvailable},
    {'w', "send_cmd", kRestOfLine, kSet, notAvailable},
    {'W', "send_cmd_rx", kRestOfLine, kSet, notAvailable},
    {'*', "reset", 1, kSet, notAvailable},
    {'_', "get_info", 0, kGet, getInfo},
    {'1', "dump_caps", 0, kSet, tellAbilities},
    {'2', "power2mW", 3, kGet, notAvailable},
    {'4', "mW2power", 3, kGet, notAvailable},
    {'3', "dump_conf", 0, kGet, notAvailable},
    {'q', "quit", 0, kSet, quit},
    {'Q', "exit", 0, kSet, quit},
    {0, "dump_state", 0, kGet, tellState},
    {0, "chk_vfo", 0, Closing::Never, checkVfo},
    {0, "set_vfo_opt", 1, kSet, setVfoOption},
    {0, "get_vfo_info", 1, kGet, getVfoInfo},
    {0, "get_vfo_list", 0, kGet, fixedValue<kVfoList, kVfo>},
    {0, "get_rig_info", 0, kGet, getRigInfo},
    {0, "get_dcd", 0, kGet, getSquelch},
    {0, "get_powerstat", 0, kGet, fixedValue<kPower, kOne>},
    {0, "set_powerstat", 1, kSet, setPower},
    {0, "get_lock_mode", 0, kGet, fixedValue<kLocked, kZero>},
    {0, "set_lock_mode", 1, kSet, offOnly},
    {0, "get_cache", 0, kGet, fixedValue<kCache, kCacheTime>},
    {0, "set_cache", 1, kSet, ok},
    {0, "stop_morse", 0, kSet, ok},
    {0, "wait_morse", 0, kSet, ok},
    {0, "AOS", 0, kSet, ok},
    {0, "LOS", 0, kSet, ok},
};

}  // namespace

const CommandRow* commandNamed(std::string_view name) {
  const auto row = std::ranges::find(kRows, name, &CommandRow::name);
  return row == std::end(kRows) ? nullptr : row;
}

const CommandRow* commandOfLetter(char letter) {
  const auto row = std::ranges::find(kRows, letter, &CommandRow::letter);
  return row == std::end(kRows) || letter == 0 ? nullptr : row;
}

}  // namespace kelvane::sondrel
