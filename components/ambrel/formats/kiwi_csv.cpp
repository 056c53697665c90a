// KiwiSDR's labels as its administration page exports and imports them.

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/kiwi_labels.h"
#include "components/ambrel/formats/list_writing.h"

namespace kelvane::formats {

namespace {

constexpr std::string_view kKiwiDays = "MTWTFSS";

/// "MTWTFSS" with "_" for days off; false where it is something else.
bool takeKiwiDays(std::string_view text, Entry& entry) {
  if (text.empty()) return true;
  if (text.size() != 7) return false;
  std::uint8_t days = 0;
  for (std::size_t day = 0; day < 7; ++day) {
    if (text[day] == '_') continue;
    if (text[day] != kKiwiDays[day]) return false;
    days |= static_cast<std::uint8_t>(1 << day);
  }
  entry.days = lists::weekdaysText(days);
  return true;
}

/// Empty for every day.
std::string kiwiDays(const Entry& entry, Losses& losses) {
  if (entry.days.empty()) return {};
  const auto days = lists::weekdaysOf(entry.days);
  if (!days) losses.count(Losses::DaysBeyondWeekdays);
  std::string text(kKiwiDays);
  for (std::size_t day = 0; day < 7; ++day) {
    if (days && !(*days >> day & 1)) text[day] = '_';
  }
  return text;
}

/// Whether a further column is an option of a label that KiwiSDR's CSV has no column for.
bool isOptionOfJsonAlone(const std::pair<std::string, std::string>& column) {
  constexpr std::array<std::string_view, 5> kBoth = {kKiwiExtension, kKiwiOffset, kKiwiSignal,
                                                     kKiwiLow, "mode"};
  const std::string_view name = column.first;
  return name.starts_with("KiwiSDR ") &&
         std::ranges::find(kBoth, name.substr(kKiwi.size() + 1)) == kBoth.end();
}

}  // namespace

Reading readKiwiCsv(std::string_view text) {
  Reading reading;
  reading.format = Format::KiwiCsv;
  const bool semicolons = text.substr(0, 2000).find("Freq kHz;") != text.npos;
  TableRows rows(text, semicolons ? ';' : ',');
  do {
    if (!rows.next()) return reading;
  } while (rows.raw().starts_with('#'));
  const ColumnsByName columns(rows);
  const auto place = [&columns](std::string_view heading) { return columns.of(heading); };
  const std::size_t frequencyAt = place("Freq kHz"), mode = place("Mode"), ident = place("Ident"),
                    notes = place("Notes"), type = place("Type"), low = place("PB low"),
                    high = place("PB high"), days = place("DOW"), begin = place("Begin"),
                    end = place("End");
  const std::array<std::pair<std::size_t, std::string_view>, 3> kept = {
      {{place("Extension"), kKiwiExtension},
       {place("Offset"), kKiwiOffset},
       {place("Sig bw"), kKiwiSignal}}};
  while (rows.next()) {
    Taken taken;
    taken.place = rows.line();
    const auto frequency = lists::readFrequency(rows.field(frequencyAt), lists::Unit::Khz);
    std::string reason = rows.whyCut();
    if (!frequency) reason = frequency.reason();
    if (rows.fields().size() < 3) reason = "there are too few fields for a label";
    if (!reason.empty()) {
      reading.leftOut.push_back({rows.line(), reason});
      continue;
    }
    Entry& entry = taken.entry;
    entry.frequency = *frequency;
    takeMode(rows.field(mode), kKiwiModes, taken, kKiwi);
    entry.name = lists::oneLine(kiwiText(rows.field(ident)));
    entry.note = trimmed(kiwiText(rows.field(notes)));
    entry.group = groupOfKiwiType(rows.field(type));
    takeKiwiPassband(num(rows.field(low)), num(rows.field(high)), entry);
    if (!takeKiwiDays(rows.field(days), entry)) remark(taken, "the days cannot be read");
    const std::string times = std::string(rows.field(begin)) + '-' + std::string(rows.field(end));
    if (times.size() > 1 && !lists::readTimesOf(times, entry))
      remark(taken, "the times cannot be read");
    for (const auto& [column, name] : kept) {
      const auto value = rows.field(column);
      if (!value.empty() && value != "0") keepField(entry, kKiwi, name, value);
    }
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

namespace {

void addLabel(ListPart& part, const Entry& entry, const WordsOfModes& words) {
  auto& [out, losses, unused] = part;
  std::string room;
  const auto quoted = [&out](std::string_view text) { addQuoted(out.add(';'), text); };
  const auto kept = [&](std::string_view field) { return keptField(entry, kKiwi, field); };
  losses.countParts(entry, Losses::Tags | Losses::Favourite | Losses::Skip);
  losses.countLines(entry);
  losses.countFurther(entry, kKiwi);
  if (std::ranges::any_of(entry.further, isOptionOfJsonAlone)) losses.count(Losses::OptionsOfJson);
  lists::addKhz(out, entry.frequency);
  quoted(words.wordFor(entry, losses));
  quoted(asKiwiText(entry.name, room));
  quoted(asKiwiText(entry.note, room));
  quoted(kept(kKiwiExtension));
  const std::string_view type = kiwiTypeOfGroup(entry.group, room);
  if (type.empty() && !entry.group.empty()) losses.count(Losses::GroupWithoutType);
  quoted(type);
  const Setting low = kiwiPassbandLow(entry);
  if (entry.width > 0)
    out.add(';').addNumber(low).add(';').addNumber(low + entry.width);
  else
    out.add(";;");
  addTableField(out.add(';'), kept(kKiwiOffset), kSemicolonTable);
  quoted(kiwiDays(entry, losses));
  if (entry.from >= 0) {
    lists::addMinute(out.add(";'"), entry.from);
    lists::addMinute(out.add(";'"), entry.to);
  } else {
    out.add(";;");
  }
  addTableField(out.add(';'), kept(kKiwiSignal), kSemicolonTable);
  out.add('\n');
}

}  // namespace

Writing writeKiwiCsv(std::span<const lists::EntryPtr> entries) {
  constexpr ListFrame kFrame{
      "Freq kHz;\"Mode\";\"Ident\";\"Notes\";\"Extension\";\"Type\";PB low;PB "
      "high;Offset;\"DOW\";Begin;End;Sig bw\n",
      100};
  const WordsOfModes words(kKiwiModes, "IQ", kKiwi);
  const std::vector<const Entry*> sorted = inKiwiOrder(entries);
  return writeLines(kFrame, sorted.size(),
                    [&](ListPart& part, std::size_t i) { addLabel(part, *sorted[i], words); });
}

}  // namespace kelvane::formats
