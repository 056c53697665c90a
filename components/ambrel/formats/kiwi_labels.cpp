#include "components/ambrel/formats/kiwi_labels.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"

namespace kelvane::formats {

namespace {

struct KiwiType {
  std::string_view type, name;
};
constexpr auto kTypes = std::to_array<KiwiType>({{"T1", "Channel"},
                                                 {"T2", "Ham"},
                                                 {"T3", "Bcast"},
                                                 {"T4", "Utility"},
                                                 {"T5", "Time"},
                                                 {"T6", "ALE"},
                                                 {"T7", "HFDL"},
                                                 {"T8", "Milcom"},
                                                 {"T9", "CW"},
                                                 {"T10", "FSK"},
                                                 {"T11", "FAX"},
                                                 {"T12", "Aero"},
                                                 {"T13", "Marine"},
                                                 {"T14", "Spy"},
                                                 {"T15", "masked"}});

constexpr std::string_view kTypeBeyond = "Type ";  ///< and its number, of one without a name

constexpr double kWidestPassband = 10'000'000;

/// Beside the carrier for a sideband, around it otherwise.
Setting usualPassbandLow(const Entry& entry) {
  constexpr Setting kLowestTone = 300;
  const auto mode = static_cast<kelvane::Mode>(entry.mode);
  if (mode == Mode::Usb) return kLowestTone;
  if (mode == Mode::Lsb) return -kLowestTone - entry.width;
  return -entry.width / 2;
}

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  const char large = static_cast<char>(c & ~0x20);
  return large >= 'A' && large <= 'F' ? large - 'A' + 10 : -1;
}

/// The byte that "%20" stands for at a place; -1 where nothing of that form is there.
int encodedByte(std::string_view text, std::size_t at) {
  if (at + 2 >= text.size() || text[at] != '%') return -1;
  const int high = hexDigit(text[at + 1]), low = hexDigit(text[at + 2]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

}  // namespace

std::string groupOfKiwiType(std::string_view type) {
  const auto number = type.starts_with('T') ? wholeNumber(type.substr(1)) : std::nullopt;
  if (!number) return lists::oneLine(type);
  if (*number <= 0) return {};
  const auto place = static_cast<std::size_t>(*number) - 1;
  return place < kTypes.size() ? std::string(kTypes[place].name)
                               : std::string(kTypeBeyond) + std::to_string(*number);
}

std::string_view kiwiTypeOfGroup(std::string_view group, std::string& room) {
  const auto known = std::ranges::find(kTypes, group, &KiwiType::name);
  if (known != kTypes.end()) return known->type;
  if (!group.starts_with(kTypeBeyond)) return {};
  const std::string_view number = group.substr(kTypeBeyond.size());
  if (number.empty() || !std::ranges::all_of(number, isDigit)) return {};
  return (room = 'T') += number;
}

std::string kiwiText(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int byte = encodedByte(text, at);
    plain += byte < 0 ? text[at] : static_cast<char>(byte);
    if (byte >= 0) at += 2;
  }
  return isUtf8(plain) && plain.find('\0') == plain.npos ? plain : std::string(text);
}

std::string_view asKiwiText(std::string_view text, std::string& room) {
  if (text.find('%') == text.npos) return text;
  room.clear();
  for (std::size_t at = 0; at < text.size(); ++at) {
    room += text[at];
    if (encodedByte(text, at) >= 0) room += "25";
  }
  return room;
}

std::vector<const Entry*> inKiwiOrder(std::span<const lists::EntryPtr> entries) {
  const auto frequency = [](const Entry* entry) { return entry->frequency; };
  std::vector<const Entry*> sorted;
  sorted.reserve(entries.size());
  for (const lists::EntryPtr& entry : entries) sorted.push_back(entry.get());
  if (!std::ranges::is_sorted(sorted, {}, frequency))
    std::ranges::stable_sort(sorted, {}, frequency);
  return sorted;
}

void takeKiwiPassband(double low, double high, Entry& entry) {
  if (!(high > low) || low < -kWidestPassband || high > kWidestPassband) return;
  entry.width = static_cast<Setting>(std::lround(high) - std::lround(low));
  const auto begin = static_cast<Setting>(std::lround(low));
  if (entry.width > 0 && begin != usualPassbandLow(entry))
    keepField(entry, kKiwi, kKiwiLow, std::to_string(begin));
}

Setting kiwiPassbandLow(const Entry& entry) {
  if (entry.further.empty()) return usualPassbandLow(entry);
  const auto kept = wholeNumber(keptField(entry, kKiwi, kKiwiLow));
  const bool fits = kept && *kept >= -kWidestPassband && *kept <= kWidestPassband;
  return fits ? static_cast<Setting>(*kept) : usualPassbandLow(entry);
}

}  // namespace kelvane::formats
