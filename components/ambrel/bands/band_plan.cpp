#include "components/ambrel/bands/band_plan.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/number.h"
#include "components/ambrel/text_table.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kBandFields = 6;

std::string inLine(int line, const std::string& what) {
  return "Line " + std::to_string(line) + ": " + what;
}

std::optional<Hz> hertz(const std::string& text, Hz least) {
  const auto value = wholeNumber(text);
  if (!value || *value < least || *value > kHighestHz) return std::nullopt;
  return static_cast<Hz>(*value);
}

Result<BandEntry> entryOf(const TableRow& row) {
  const auto& field = row.fields;
  if (field.size() != kBandFields)
    return Failure{"has " + std::to_string(field.size()) + " fields instead of 6"};
  const auto start = hertz(field[1], 0), end = hertz(field[2], 1);
  const auto step = hertz(field[3], 1), filter = hertz(field[5], 1);
  const auto mode = modeNamed(field[4]);
  if (field[0].empty()) return Failure{"has no name"};
  if (!start) return Failure{"the start \"" + field[1] + "\" is no frequency in Hz"};
  if (!end || *end <= *start)
    return Failure{"the end \"" + field[2] + "\" does not follow the start"};
  if (!step) return Failure{"the step \"" + field[3] + "\" is no step in Hz"};
  if (!mode) return Failure{"there is no mode \"" + field[4] + "\""};
  if (!filter) return Failure{"the filter \"" + field[5] + "\" is no bandwidth in Hz"};
  return BandEntry{field[0], *start, *end, *step, static_cast<Setting>(*mode), *filter};
}

/// Whether two neighbours touch.
Result<> checkNeighbours(const BandEntry& before, const BandEntry& after) {
  if (after.start == before.end) return {};
  const std::string between = "\"" + before.name + "\" ends at " + std::to_string(before.end) +
                              " Hz, \"" + after.name + "\" starts at " +
                              std::to_string(after.start) + " Hz";
  return Failure{(after.start > before.end ? "a gap: " : "an overlap: ") + between};
}

void checkRange(const std::vector<BandEntry>& entries, std::vector<std::string>& problems) {
  if (entries.empty()) {
    if (problems.empty()) problems.push_back("the plan has no entries");
    return;
  }
  if (entries.front().start > kPlanStart) problems.push_back("the plan starts above 9 kHz");
  if (entries.back().end < kPlanEnd) problems.push_back("the plan ends below 30 MHz");
}

}  // namespace

BandPlan::BandPlan(std::vector<BandEntry> entries) : entries_(std::move(entries)) {
  const auto am = static_cast<Setting>(Mode::Am), fm = static_cast<Setting>(Mode::Fm);
  const Hz first = entries_.empty() ? kPlanStart : entries_.front().start;
  const Hz last = entries_.empty() ? kPlanStart : entries_.back().end;
  if (first > 0)
    entries_.insert(entries_.begin(),
                    {"Below all allocations", 0, first, 100, static_cast<Setting>(Mode::Cw), 500});
  if (last < kPlanEnd) entries_.push_back({"No band plan", last, kPlanEnd, 1000, am, 6000});
  const Hz end = entries_.back().end;
  if (end < kHighestHz) entries_.push_back({"VHF and above", end, kHighestHz, 12'500, fm, 12'000});
}

std::size_t BandPlan::at(Hz frequency) const {
  const auto after =
      std::upper_bound(entries_.begin() + 1, entries_.end(), frequency,
                       [](Hz wanted, const BandEntry& entry) { return wanted < entry.start; });
  return static_cast<std::size_t>(after - entries_.begin()) - 1;
}

BandPlanReading readBandPlan(std::string_view text) {
  BandPlanReading reading;
  const auto rows = readTable(text);
  if (!rows) {
    reading.problems.push_back(rows.reason());
    return reading;
  }
  std::vector<BandEntry> entries;
  for (const TableRow& row : *rows) {
    auto entry = entryOf(row);
    if (!entry) {
      reading.problems.push_back(inLine(row.line, entry.reason()));
      continue;
    }
    if (!entries.empty()) {
      const Result<> touching = checkNeighbours(entries.back(), *entry);
      if (!touching) reading.problems.push_back(inLine(row.line, touching.reason()));
    }
    entries.push_back(std::move(*entry));
  }
  checkRange(entries, reading.problems);
  if (reading.problems.empty()) reading.plan.emplace(std::move(entries));
  return reading;
}

BandPlan builtInBandPlan() {
  constexpr auto am = static_cast<Setting>(Mode::Am), usb = static_cast<Setting>(Mode::Usb),
                 lsb = static_cast<Setting>(Mode::Lsb), cw = static_cast<Setting>(Mode::Cw);
  return BandPlan({
      {"Very low frequencies", 9'000, 148'500, 100, cw, 500},
      {"Long wave", 148'500, 283'500, 9'000, am, 6'000},
      {"Beacons and maritime", 283'500, 526'500, 1'000, cw, 500},
      {"Medium wave", 526'500, 1'606'500, 9'000, am, 6'000},
      {"Maritime and fixed", 1'606'500, 1'810'000, 1'000, usb, 2'400},
      {"Amateur 160 m", 1'810'000, 2'000'000, 100, lsb, 2'400},
      {"Maritime and tropical", 2'000'000, 3'500'000, 1'000, usb, 2'400},
      {"Amateur 80 m", 3'500'000, 3'800'000, 100, lsb, 2'400},
      {"Fixed and mobile", 3'800'000, 5'900'000, 1'000, usb, 2'400},
      {"Broadcast 49 m", 5'900'000, 6'200'000, 5'000, am, 6'000},
      {"Maritime and aeronautical", 6'200'000, 7'000'000, 1'000, usb, 2'400},
      {"Amateur 40 m", 7'000'000, 7'200'000, 100, lsb, 2'400},
      {"Broadcast 41 m", 7'200'000, 7'450'000, 5'000, am, 6'000},
      {"Fixed, maritime and aeronautical", 7'450'000, 9'400'000, 1'000, usb, 2'400},
      {"Broadcast 31 m", 9'400'000, 9'900'000, 5'000, am, 6'000},
      {"Fixed and mobile", 9'900'000, 14'000'000, 1'000, usb, 2'400},
      {"Amateur 20 m", 14'000'000, 14'350'000, 100, usb, 2'400},
      {"Fixed and mobile", 14'350'000, 21'000'000, 1'000, usb, 2'400},
      {"Amateur 15 m", 21'000'000, 21'450'000, 100, usb, 2'400},
      {"Fixed and mobile", 21'450'000, 28'000'000, 1'000, usb, 2'400},
      {"Amateur 10 m", 28'000'000, 29'700'000, 100, usb, 2'400},
      {"Fixed and mobile", 29'700'000, 30'000'000, 1'000, usb, 2'400},
  });
}

}  // namespace kelvane::ambrel
