#include "components/sondrel/rigctld/rigctld_mapping.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

#include "components/sondrel/rigctld/rigctld_bfo.h"
#include "components/sondrel/s_meter.h"
#include "components/sondrel/standard_modes.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

constexpr Hz kNineDigits = 999'999'999;

struct Alias {
  std::string_view radio;
  Mode mode;
};

// Names that radios and programs have for modes of other names here. Where a radio has both, the
// first one that it lists is meant.
constexpr Alias kAliases[] = {
    {"AMS", Mode::Sam},     {"ECSSUSB", Mode::Sah}, {"ECSSLSB", Mode::Sal}, {"CWU", Mode::Cw},
    {"CWL", Mode::Cwr},     {"NFM", Mode::Fmn},     {"AMN", Mode::Am},      {"FM-D", Mode::DataFm},
    {"AM-D", Mode::DataAm}, {"WFAX", Mode::Fax},    {"WFM_ST", Mode::Wfm},
};

struct AgcRow {
  std::string_view protocol;
  std::string_view name;
  Long decay;  // ms
};

// In the order of the contract's numbers, which are those of every receiver here.
constexpr std::array<AgcRow, 9> kAgcRows = {{{"SLOW", "Slow", 2000},
                                             {"MEDIUM", "Medium", 500},
                                             {"FAST", "Fast", 100},
                                             {"OFF", "Off", 0},
                                             {"SUPERFAST", "Superfast", 50},
                                             {"AUTO", "Auto", 0},
                                             {"LONG", "Long", 4000},
                                             {"USER", "User", 0},
                                             {"ON", "On", 0}}};

Setting agcNumber(std::string_view protocol) {
  const auto row = std::ranges::find(kAgcRows, protocol, &AgcRow::protocol);
  return row == kAgcRows.end() ? -1 : static_cast<Setting>(row - kAgcRows.begin());
}

std::vector<Choice> agcChoices(const std::vector<AgcLevel>& levels) {
  std::vector<Choice> choices;
  for (const auto& level : levels) {
    const auto number = agcNumber(level.name);
    if (number < 0) continue;
    const auto& row = kAgcRows[static_cast<std::size_t>(number)];
    choices.push_back({number, std::string(row.name), row.decay});
  }
  std::ranges::sort(choices, {}, &Choice::value);
  return choices;
}

std::vector<Choice> attenuatorChoices(const std::vector<std::int32_t>& steps) {
  std::vector<Choice> choices = {{0, "Off", 0}};
  for (const auto db : steps) {
    choices.push_back({static_cast<Setting>(choices.size()), std::to_string(db) + " dB", db});
  }
  return choices;
}

}  // namespace

RigctldMapping::RigctldMapping(RigctldManner manner, RigctldCapabilities can)
    : manner_(manner), can_(std::move(can)) {}

Capabilities RigctldMapping::capabilities() const {
  Capabilities can;
  can.type = can_.model;
  can.minimum = std::min(can_.lowestFrequency(), kNineDigits);
  can.maximum = std::min(can_.highestFrequency(), kNineDigits);
  can.finest = can_.finestStep();
  can.largestStep = std::max(can.largestStep, can_.coarsestStep());
  const auto bfo = bfoLimits(can_, manner_.bfoLimit);
  can.bfoMinimum = bfo.low;
  can.bfoMaximum = bfo.high;
  for (const auto& name : can_.modes) {
    const auto choice = modeChoice(name);
    if (choice.value >= 0 && !can.mode(choice.value)) can.modes.push_back(choice);
  }
  std::ranges::sort(can.modes, {}, &ModeChoice::value);
  const auto& settable = can_.settable;
  if (settable.has(RigItem::Agc)) can.agc = agcChoices(can_.agcLevels);
  if (settable.has(RigItem::Blanker)) can.blanker = {{0, "Off", 0}, {1, "On", 0}};
  if (settable.has(RigItem::Attenuator)) can.attenuator = attenuatorChoices(can_.attenuators);
  can.hfFilter = manner_.preamp && settable.has(RigItem::Preamp);
  can.firstChannel = manner_.firstChannel;
  can.channelCount = manner_.channelCount;
  can.channelSkip = manner_.channelSkip;
  return can;
}

ModeChoice RigctldMapping::modeChoice(const std::string& name) const {
  auto choice = standardMode(mode(name));
  const auto mode = static_cast<Mode>(choice.value);
  choice.carrier = choice.carrier || mode == Mode::Sal || mode == Mode::Sah || mode == Mode::Wfm ||
                   mode == Mode::Fmn;
  choice.bfo = bfoWay(can_, name) != BfoWay::None;
  choice.filters = can_.widths(name);
  choice.usual = can_.usualWidth(name);
  return choice;
}

Setting RigctldMapping::mode(std::string_view name) const {
  if (const auto same = modeNamed(name)) return static_cast<Setting>(*same);
  const auto alias = std::ranges::find(kAliases, name, &Alias::radio);
  return alias == std::end(kAliases) ? -1 : static_cast<Setting>(alias->mode);
}

std::string RigctldMapping::modeName(Setting mode) const {
  const auto named = [&](const std::string& name) { return this->mode(name) == mode; };
  const auto found = std::ranges::find_if(can_.modes, named);
  return found == can_.modes.end() ? std::string() : *found;
}

Setting RigctldMapping::agc(std::int32_t code) const {
  const auto level = std::ranges::find(can_.agcLevels, code, &AgcLevel::code);
  return level == can_.agcLevels.end() ? -1 : agcNumber(level->name);
}

std::int32_t RigctldMapping::agcCode(Setting agc) const {
  for (const auto& level : can_.agcLevels) {
    if (agcNumber(level.name) == agc) return level.code;
  }
  return -1;
}

Setting RigctldMapping::attenuator(std::int32_t decibels) const {
  const auto choices = attenuatorChoices(can_.attenuators);
  const auto distance = [decibels](const Choice& choice) {
    return std::abs(std::int64_t{choice.aux} - decibels);
  };
  return std::ranges::min_element(choices, {}, distance)->value;
}

std::int32_t RigctldMapping::decibels(Setting attenuator) const {
  const auto choices = attenuatorChoices(can_.attenuators);
  const auto* choice = choiceOf(choices, attenuator);
  return choice ? choice->aux : 0;
}

std::int32_t RigctldMapping::preamp(bool on) const {
  return on && !can_.preamps.empty() ? can_.preamps.front() : 0;
}

Long RigctldMapping::level(std::int32_t strength) const {
  // rigctld counts from S9; the programs give the level itself, on a scale of their own.
  const std::int64_t level = std::int64_t{strength} + manner_.offset + (plain() ? 0 : kS9);
  return static_cast<Long>(std::clamp<std::int64_t>(level, -200, 100));
}

std::int32_t RigctldMapping::width(Hz wanted) const {
  // A program keeps a width with each mode, and tells no list of them that could be trusted.
  return plain() ? 0 : wanted;
}

}  // namespace kelvane::sondrel
