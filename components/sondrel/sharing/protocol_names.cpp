#include "components/sondrel/sharing/protocol_names.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

struct KinRow {
  std::string_view name;
  Mode kin;
};

// What does for a mode that the receiver lacks, the nearest first.
constexpr KinRow kKin[] = {{"PKTUSB", Mode::Usb},  {"PKTLSB", Mode::Lsb},  {"PKTFM", Mode::Fm},
                           {"PKTAM", Mode::Am},    {"AMS", Mode::Sam},     {"AMS", Mode::Am},
                           {"SAM", Mode::Am},      {"SAL", Mode::Sam},     {"SAL", Mode::Am},
                           {"SAH", Mode::Sam},     {"SAH", Mode::Am},      {"AMN", Mode::Am},
                           {"ECSSUSB", Mode::Sah}, {"ECSSUSB", Mode::Usb}, {"ECSSLSB", Mode::Sal},
                           {"ECSSLSB", Mode::Lsb}, {"FMN", Mode::Fm}};

}  // namespace

std::string_view protocolMode(Setting mode) {
  // Where digital broadcasts are, analogue ones lie too; an unknown name would end some programs.
  if (mode == static_cast<Setting>(Mode::Drm)) return "AM";
  return modeName(mode);
}

std::optional<Setting> modeForName(const Capabilities& can, std::string_view name) {
  const auto has = [&](Mode mode) { return can.mode(static_cast<Setting>(mode)) != nullptr; };
  if (const auto same = modeNamed(name); same && has(*same)) return static_cast<Setting>(*same);
  for (const KinRow& row : kKin) {
    if (equalIgnoringCase(row.name, name) && has(row.kin)) return static_cast<Setting>(row.kin);
  }
  return std::nullopt;
}

std::uint64_t modeBitOf(Setting mode) { return modeBit(modeName(mode)); }

std::string protocolModes(const Capabilities& can) {
  std::string list;
  for (const ModeChoice& choice : can.modes) {
    if (modeBitOf(choice.value) != 0) list += std::string(modeName(choice.value)) + " ";
  }
  return list;
}

std::optional<std::int32_t> protocolAgc(std::string_view name) { return agcCode(upper(name)); }

std::optional<Setting> agcForCode(const Capabilities& can, std::int64_t code) {
  const auto same = [code](const Choice& choice) { return protocolAgc(choice.name) == code; };
  const auto found = std::ranges::find_if(can.agc, same);
  return found == can.agc.end() ? std::nullopt : std::optional(found->value);
}

std::string agcLevelList(const Capabilities& can) {
  std::string list;
  for (const Choice& choice : can.agc) {
    const auto code = protocolAgc(choice.name);
    if (!code) continue;
    list += (list.empty() ? "" : " ") + std::to_string(*code) + "=" + upper(choice.name);
  }
  return list;
}

}  // namespace kelvane::sondrel
