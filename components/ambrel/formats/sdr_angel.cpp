// The CSV of SDRangel's frequency scanner.

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "components/ambrel/formats/list_writing.h"

namespace kelvane::formats {

namespace {

constexpr std::string_view kSdrAngel = "SDRangel";
/// Of SDRangel's columns those that no station of ours has.
constexpr std::array<std::string_view, 3> kScannerFields = {"Channel", "TH", "Sq"};

}  // namespace

Reading readSdrAngel(std::string_view text) {
  Reading reading;
  reading.format = Format::SdrAngel;
  TableRows rows(text, ',');
  if (!rows.next()) return reading;
  const ColumnsByName columns(rows);
  const std::size_t frequencyAt = columns.of("Freq (Hz)"), enableAt = columns.of("Enable"),
                    notesAt = columns.of("Notes"), widthAt = columns.of("Ch BW (Hz)");
  const std::array<std::size_t, 3> kept = {columns.of("Channel"), columns.of("TH (dB)"),
                                           columns.of("Sq (dB)")};
  while (rows.next()) {
    const auto frequency = lists::readFrequency(rows.field(frequencyAt), lists::Unit::Hz);
    std::string reason = rows.whyCut();
    if (!frequency) reason = frequency.reason();
    if (!reason.empty()) {
      reading.leftOut.push_back({rows.line(), reason});
      continue;
    }
    Taken taken;
    taken.place = rows.line();
    taken.entry.frequency = *frequency;
    taken.entry.name = lists::oneLine(rows.field(notesAt));
    taken.entry.skip = !rows.field(enableAt).empty() && !isMark(rows.field(enableAt));
    takeWidth(rows.field(widthAt), taken);
    for (std::size_t i = 0; i < kept.size(); ++i)
      if (!rows.field(kept[i]).empty())
        keepField(taken.entry, kSdrAngel, kScannerFields[i], rows.field(kept[i]));
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

Writing writeSdrAngel(std::span<const lists::EntryPtr> entries) {
  constexpr ListFrame kFrame{"Freq (Hz),Enable,Notes,Channel,Ch BW (Hz),TH (dB),Sq (dB)\n", 60};
  return writeLines(kFrame, entries.size(), [entries](ListPart& part, std::size_t i) {
    const Entry& entry = *entries[i];
    part.losses.countParts(entry, Losses::Mode | Losses::Group | Losses::Tags | Losses::Times |
                                      Losses::Days | Losses::Favourite | Losses::Note);
    part.losses.countFurther(entry, kSdrAngel);
    TextWriter& out = part.text;
    const auto kept = [&](std::size_t field) {
      addTableField(out.add(','), keptField(entry, kSdrAngel, kScannerFields[field]));
    };
    out.addNumber(entry.frequency).add(entry.skip ? ",false," : ",true,");
    addTableField(out, entry.name);
    kept(0);
    out.add(',');
    if (entry.width > 0) out.addNumber(entry.width);
    kept(1);
    kept(2);
    out.add('\n');
  });
}

}  // namespace kelvane::formats
