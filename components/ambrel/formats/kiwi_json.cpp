// KiwiSDR's labels as it keeps them.

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"
#include "components/ambrel/formats/json_parts.h"
#include "components/ambrel/formats/kiwi_labels.h"
#include "components/ambrel/formats/list_writing.h"

namespace kelvane::formats {

namespace {

/// Options that the entry has fields for; the others are kept as they are.
bool isTakenOption(std::string_view key) {
  constexpr std::array<std::string_view, 5> kTaken = {"lo", "hi", "d0", "b0", "e0"};
  return std::ranges::find(kTaken, key) != kTaken.end();
}

bool takeKiwiOptions(const Json& options, Taken& taken) {
  Entry& entry = taken.entry;
  for (const auto& [key, value] : options.items()) {
    if (key.size() > 1 && key[0] == 'T' && isDigit(key[1]))
      entry.group = groupOfKiwiType(key);
    else if (!isTakenOption(key))
      keepField(entry, kKiwi, key, value.is_string() ? value.get<std::string>() : value.dump());
  }
  takeKiwiPassband(numberOf(options, "lo", 0), numberOf(options, "hi", 0), entry);
  const auto days = static_cast<int>(std::clamp(numberOf(options, "d0", 127), 0.0, 127.0));
  std::uint8_t mask = 0;  // Monday is the highest bit there
  for (int day = 0; day < 7; ++day)
    mask |= static_cast<std::uint8_t>((days >> (6 - day) & 1) << day);
  entry.days = lists::weekdaysText(mask);
  const double begin = numberOf(options, "b0", 0), end = numberOf(options, "e0", 2400);
  if (begin < 0 || begin > 2400 || end < 0 || end > 2400) return false;
  const auto four = [](double hhmm) {
    const std::string digits = std::to_string(10000 + static_cast<int>(hhmm));
    return digits.substr(1);
  };
  return lists::readTimesOf(four(begin) + '-' + four(end), entry);
}

}  // namespace

Reading readKiwiJson(const std::string& text) {
  Reading reading;
  reading.format = Format::KiwiJson;
  const Json json = readJson(text, reading);
  if (!reading.refusal.empty()) return reading;
  const Json* labels = json.is_object() && json.contains("dx") ? &json["dx"] : &json;
  if (!labels->is_array()) {
    reading.refusal = "There are no labels of KiwiSDR in it.";
    return reading;
  }
  std::size_t number = 0;
  reading.taken.reserve(labels->size());
  for (const Json& label : *labels) {
    ++number;
    const bool shaped =
        label.is_array() && label.size() >= 3 && label[1].is_string() && label[2].is_string();
    const auto frequency = shaped ? frequencyOf(label[0], 1000)
                                  : Result<Hz>(Failure{"it has not the parts of a label"});
    if (!frequency) {
      reading.leftOut.push_back({number, frequency.reason()});
      continue;
    }
    Taken taken;
    taken.place = number;
    taken.entry.frequency = *frequency;
    takeMode(label[1].get<std::string>(), kKiwiModes, taken, kKiwi);
    taken.entry.name = lists::oneLine(kiwiText(label[2].get<std::string>()));
    if (label.size() > 3 && label[3].is_string())
      taken.entry.note = trimmed(kiwiText(label[3].get<std::string>()));
    if (label.size() > 4 && label.back().is_object() && !takeKiwiOptions(label.back(), taken))
      remark(taken, "its times cannot be read");
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

namespace {

/// What was kept of an option, as JSON again: only an extension's parameters are a text that looks
/// like a number.
void addKeptOption(TextWriter& options, std::string_view key, std::string_view value) {
  addJsonText(options.add(", "), key);
  options.add(": ");
  if (key != kKiwiExtension && !value.starts_with('"') && Json::accept(value))
    options.add(value);
  else
    addJsonText(options, value);
}

/// Monday is the highest of seven bits there.
int kiwiDayBits(std::uint8_t days) {
  int bits = 0;
  for (int day = 0; day < 7; ++day) bits |= (days >> day & 1) << (6 - day);
  return bits;
}

/// Each behind a comma.
void addKiwiOptions(TextWriter& options, const Entry& entry, Losses& losses) {
  std::string room;
  if (const auto type = kiwiTypeOfGroup(entry.group, room); !type.empty())
    options.add(", \"").add(type).add("\": 1");
  else if (!entry.group.empty())
    losses.count(Losses::GroupWithoutType);
  if (entry.width > 0) {
    const Setting low = kiwiPassbandLow(entry);
    options.add(", \"lo\": ").addNumber(low);
    options.add(", \"hi\": ").addNumber(low + entry.width);
  }
  if (!entry.days.empty()) {
    if (const auto days = lists::weekdaysOf(entry.days))
      options.add(", \"d0\": ").addNumber(kiwiDayBits(*days));
    else
      losses.count(Losses::DaysBeyondWeekdays);
  }
  if (entry.from >= 0) {
    const auto plain = [](std::int16_t minute) { return minute / 60 * 100 + minute % 60; };
    options.add(", \"b0\": ").addNumber(plain(entry.from));
    options.add(", \"e0\": ").addNumber(plain(entry.to));
  }
  losses.countFurther(entry, kKiwi);
  for (const auto& [name, value] : entry.further) {
    if (!name.starts_with("KiwiSDR ")) continue;
    const std::string_view key = std::string_view(name).substr(kKiwi.size() + 1);
    if (key != kKiwiLow && key != kModeField) addKeptOption(options, key, value);
  }
}

void addJsonLabel(ListPart& part, const Entry& entry, const WordsOfModes& words) {
  auto& [out, losses, options] = part;
  std::string room;
  losses.countParts(entry, Losses::Tags | Losses::Favourite | Losses::Skip);
  lists::addKhz(out.add('['), entry.frequency);
  addJsonText(out.add(", "), words.wordFor(entry, losses));
  addJsonText(out.add(", "), asKiwiText(entry.name, room));
  addJsonText(out.add(", "), asKiwiText(entry.note, room));
  options.clear();
  addKiwiOptions(options, entry, losses);
  if (!options.view().empty()) out.add(", {").add(options.view().substr(2)).add('}');
  out.add(']');
}

}  // namespace

Writing writeKiwiJson(std::span<const lists::EntryPtr> entries) {
  constexpr ListFrame kFrame{"{\"dx\":[", 100, "\n]}\n"};
  const WordsOfModes words(kKiwiModes, "IQ", kKiwi);
  const std::vector<const Entry*> sorted = inKiwiOrder(entries);
  return writeLines(kFrame, sorted.size(), [&](ListPart& part, std::size_t i) {
    part.text.add(i == 0 ? "\n" : ",\n");
    addJsonLabel(part, *sorted[i], words);
  });
}

}  // namespace kelvane::formats
