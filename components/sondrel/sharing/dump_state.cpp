#include "components/sondrel/sharing/dump_state.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "components/sondrel/sharing/protocol_names.h"

namespace kelvane::sondrel {

namespace {

using Lines = std::vector<std::string>;

constexpr std::uint32_t kAttBit = 1u << 1;
constexpr std::uint32_t kAgcBit = 1u << 17;
constexpr std::uint32_t kStrengthBit = 1u << 30;
constexpr std::uint32_t kBlankerBit = 1u << 1;
/// The client of the same protocol; shown nowhere.
constexpr std::string_view kModel = "2";

std::string hexadecimal(std::uint64_t bits) {
  std::array<char, 24> text;
  std::snprintf(text.data(), text.size(), "0x%llx", static_cast<unsigned long long>(bits));
  return text.data();
}

std::uint64_t sharedModeBits(const Capabilities& can) {
  std::uint64_t bits = 0;
  for (const ModeChoice& choice : can.modes) bits |= modeBitOf(choice.value);
  return bits;
}

std::uint32_t settableLevels(const Capabilities& can) {
  return (can.attenuator.size() > 1 ? kAttBit : 0) | (agcLevelList(can).empty() ? 0 : kAgcBit);
}

void addRanges(Lines& lines, const Capabilities& can) {
  const std::string modes = hexadecimal(sharedModeBits(can));
  lines.push_back(std::to_string(can.minimum) + ".000000 " + std::to_string(can.maximum) +
                  ".000000 " + modes + " -1 -1 0x1 0x1");
  lines.insert(lines.end(), {"0 0 0 0 0 0 0", "0 0 0 0 0 0 0"});
  lines.push_back(modes + " " + std::to_string(std::max<Hz>(can.finest, 1)));
  lines.push_back("0 0");
}

void addFilters(Lines& lines, const Capabilities& can) {
  for (const ModeChoice& choice : can.modes) {
    const std::uint64_t bit = modeBitOf(choice.value);
    if (bit == 0) continue;
    const auto add = [&](Hz width) {
      lines.push_back(hexadecimal(bit) + " " + std::to_string(width));
    };
    // The first of a mode is what programs take for its normal one.
    if (choice.usual != 0) add(choice.usual);
    for (const Hz width : choice.filters) {
      if (width != choice.usual) add(width);
    }
  }
  lines.push_back("0 0");
}

std::string attenuatorSteps(const Capabilities& can) {
  std::string list;
  for (const Choice& choice : can.attenuator) {
    if (choice.aux != 0) list += (list.empty() ? "" : " ") + std::to_string(choice.aux);
  }
  return list;
}

void addAbilities(Lines& lines, const Capabilities& can) {
  // Limits of RIT, XIT and IF shift, and what is announced; then the preamplifiers: none.
  lines.insert(lines.end(), {"0", "0", "0", "0", ""});
  lines.push_back(attenuatorSteps(can));
  const std::string functions = hexadecimal(can.blanker.empty() ? 0 : kBlankerBit);
  const std::uint32_t levels = settableLevels(can);
  lines.insert(lines.end(), {functions, functions, hexadecimal(levels | kStrengthBit),
                             hexadecimal(levels), "0x0", "0x0"});
}

void addTail(Lines& lines, const Capabilities& can) {
  lines.insert(lines.end(), {"vfo_ops=0x0", "ptt_type=0x0", "targetable_vfo=0x0", "has_set_vfo=0",
                             "has_get_vfo=0", "has_set_freq=1", "has_get_freq=1", "has_set_conf=0",
                             "has_get_conf=0", "has_power2mW=0", "has_mW2power=0", "has_get_ant=0",
                             "has_set_ant=0", "timeout=0"});
  lines.push_back("rig_model=" + std::string(kModel));
  lines.push_back("rigctld_version=Kelvane");
  lines.push_back("agc_levels=" + agcLevelList(can));
  lines.insert(lines.end(), {"level_gran=", "parm_gran=", "hamlib_version=Kelvane", "done"});
}

}  // namespace

Lines dumpState(const SharedTraits& traits) {
  // Protocol version, model, region.
  Lines lines = {"1", std::string(kModel), "0"};
  addRanges(lines, traits.can);
  addFilters(lines, traits.can);
  addAbilities(lines, traits.can);
  addTail(lines, traits.can);
  return lines;
}

Lines dumpCaps(const SharedTraits& traits) {
  Lines lines = {"Caps dump for model: " + std::string(kModel), "Model name:\t" + traits.name,
                 "Mfg name:\tKelvane", "Hamlib version:\tKelvane", "Rig type:\tReceiver"};
  for (const std::string_view no :
       {"Can set Power Stat", "Can set VFO", "Can get VFO", "Can set PTT", "Can set Split VFO",
        "Can set RIT", "Can set XIT", "Can send Morse", "Can send Voice"}) {
    lines.push_back(std::string(no) + ":\tN");
  }
  lines.insert(lines.end() - 2, {"Can get Power Stat:\tY", "Can set Frequency:\tY",
                                 "Can get Frequency:\tY", "Can set Mode:\tY", "Can get Mode:\tY"});
  return lines;
}

std::string levelList(const Capabilities& can) { return settableLevelList(can) + "STRENGTH "; }

std::string settableLevelList(const Capabilities& can) {
  const std::uint32_t levels = settableLevels(can);
  return std::string((levels & kAttBit) != 0 ? "ATT " : "") +
         ((levels & kAgcBit) != 0 ? "AGC " : "");
}

std::string functionList(const Capabilities& can) { return can.blanker.empty() ? "" : "NB "; }

}  // namespace kelvane::sondrel
