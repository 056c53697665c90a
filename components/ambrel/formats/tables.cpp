// Lists that are tables: KiwiSDR's labels as CSV, SDRangel's frequency scanner, and any other.

#include <algorithm>
#include <array>
#include <optional>
#include <set>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/format_parts.h"
#include "components/ambrel/formats/kiwi_labels.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

constexpr std::string_view kKiwiDays = "MTWTFSS";

constexpr std::string_view kSdrAngel = "SDRangel";
/// Of SDRangel's columns those that no station of ours has.
constexpr std::array<std::string_view, 3> kScannerFields = {"Channel", "TH", "Sq"};

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
  if (!days) losses.count("its days, which are more than weekdays");
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

/// A word of a heading and what such a column means.
struct HeadingWord {
  std::string_view word;
  Field field;
};

/// Smaller widths of a table are kHz: there is no such filter.
constexpr Hz kNarrowestHz = 20;

constexpr auto kHeadingWords = std::to_array<HeadingWord>({
    {"FREQUENCY", Field::Frequency},
    {"FREQ", Field::Frequency},
    {"KHZ", Field::Frequency},
    {"MHZ", Field::Frequency},
    {"HZ", Field::Frequency},
    {"QRG", Field::Frequency},
    {"NAME", Field::Name},
    {"STATION", Field::Name},
    {"LABEL", Field::Name},
    {"IDENT", Field::Name},
    {"CALL", Field::Name},
    {"CALLSIGN", Field::Name},
    {"TITLE", Field::Name},
    {"MODE", Field::Mode},
    {"MODULATION", Field::Mode},
    {"DETECTOR", Field::Mode},
    {"BANDWIDTH", Field::Width},
    {"WIDTH", Field::Width},
    {"FILTER", Field::Width},
    {"BW", Field::Width},
    {"GROUP", Field::Group},
    {"LIST", Field::Group},
    {"CATEGORY", Field::Group},
    {"FOLDER", Field::Group},
    {"TYPE", Field::Group},
    {"TAG", Field::Tags},
    {"TAGS", Field::Tags},
    {"UTC", Field::Times},
    {"TIME", Field::Times},
    {"TIMES", Field::Times},
    {"BEGIN", Field::Begin},
    {"START", Field::Begin},
    {"END", Field::End},
    {"STOP", Field::End},
    {"DAYS", Field::Days},
    {"DOW", Field::Days},
    {"FAVOURITE", Field::Favourite},
    {"FAVORITE", Field::Favourite},
    {"SKIP", Field::Skip},
    {"LOCKOUT", Field::Skip},
    {"NOTE", Field::Note},
    {"NOTES", Field::Note},
    {"COMMENT", Field::Note},
    {"COMMENTS", Field::Note},
    {"REMARKS", Field::Note},
    {"REMARK", Field::Note},
    {"DESCRIPTION", Field::Note},
    {"INFO", Field::Note},
});

/// The words of a heading in capitals: "Freq (kHz)" has FREQ and KHZ.
std::vector<std::string> wordsOf(std::string_view heading) {
  std::vector<std::string> words(1);
  for (const char c : upper(heading)) {
    if ((c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80)
      words.back() += c;
    else if (!words.back().empty())
      words.emplace_back();
  }
  return words;
}

Field fieldOfHeading(std::string_view heading) {
  const auto words = wordsOf(heading);
  // "Bandwidth (Hz)" is a width: a unit alone says less than a name.
  for (const bool units : {false, true}) {
    for (const HeadingWord& each : kHeadingWords) {
      const bool unit = each.word == "HZ" || each.word == "KHZ" || each.word == "MHZ";
      if (unit == units && std::ranges::find(words, each.word) != words.end()) return each.field;
    }
  }
  return Field::Ignored;
}

lists::Unit unitOfHeading(std::string_view heading) {
  for (const std::string& word : wordsOf(heading)) {
    if (word == "MHZ") return lists::Unit::Mhz;
    if (word == "KHZ") return lists::Unit::Khz;
    if (word == "HZ") return lists::Unit::Hz;
  }
  return lists::Unit::Guess;
}

/// The delimiter that parts the first lines into the most columns of equal number.
char guessedDelimiter(std::string_view text) {
  char best = ',';
  std::size_t bestScore = 0;
  for (const char delimiter : {';', '\t', '|', ','}) {
    TableRows rows(text.substr(0, 20'000), delimiter);
    std::map<std::size_t, std::size_t> counts;
    for (int row = 0; row < 50 && rows.next();) {
      if (rows.raw().starts_with('#')) continue;
      ++row;
      ++counts[rows.fields().size()];
    }
    for (const auto& [columns, times] : counts) {
      if (columns < 2 || times * (columns + 8) <= bestScore) continue;
      bestScore = times * (columns + 8);
      best = delimiter;
    }
  }
  return best;
}

/// A table may have a few lines of title before the one that names its columns.
constexpr std::size_t kMostTitleRows = 20;

/// The columns that are written here; behind them stand those that the operator's list has beside.
constexpr std::array<std::string_view, 11> kOwnColumns = {
    "Frequency (kHz)", "Name", "Mode", "Bandwidth (Hz)", "Group", "Tags", "UTC", "Days",
    "Favourite",       "Skip", "Notes"};

bool isOwnHeading(const std::vector<std::string>& headings) {
  return headings.size() >= kOwnColumns.size() &&
         std::equal(kOwnColumns.begin(), kOwnColumns.end(), headings.begin());
}

bool isNumber(std::string_view field) {
  return lists::readFrequency(field, lists::Unit::Guess).frequency > 0;
}

bool holdsNumber(const TableRows& row) { return std::ranges::any_of(row.fields(), isNumber); }

/// Whether a row names columns, a frequency's among them. "Calling frequency" beside a number is a
/// station's name.
bool isHeadingRow(const TableRows& row) {
  const auto names = [](std::string_view field) {
    return fieldOfHeading(field) == Field::Frequency;
  };
  if (row.raw().starts_with('#')) return names(row.field(0));
  return std::ranges::any_of(row.fields(), names) && !holdsNumber(row);
}

bool isMark(std::string_view text) {
  return !text.empty() && text != "0" && !equalIgnoringCase(text, "no") &&
         !equalIgnoringCase(text, "false");
}

/// Takes one field; answers what is wrong with it where the row is of no use then.
std::string takeField(Field field, std::string_view text, lists::Unit unit, Taken& taken) {
  Entry& entry = taken.entry;
  const auto join = [](std::string& whole, std::string_view more, const char* between) {
    if (!more.empty()) (whole += whole.empty() ? "" : between) += more;
  };
  switch (field) {
    case Field::Frequency: {
      const auto read = lists::readFrequency(text, unit);
      entry.frequency = read.frequency;
      return read.reason;
    }
    case Field::Name:
      join(entry.name, lists::oneLine(text), " ");
      break;
    case Field::Mode:
      takeMode(text, {}, taken);
      break;
    case Field::Width:
      takeWidth(text, taken, kNarrowestHz);
      break;
    case Field::Group:
      join(entry.group, lists::oneLine(text), ", ");
      break;
    case Field::Tags:
      join(entry.tags, lists::oneLine(text), ", ");
      break;
    case Field::Times:
      if (!lists::readTimesOf(text, entry)) remark(taken, "the times cannot be read");
      break;
    case Field::Begin:
    case Field::End: {
      const auto minute = lists::readMinute(text);
      if (!minute && !text.empty()) remark(taken, "the times cannot be read");
      if (minute) (field == Field::Begin ? entry.from : entry.to) = *minute;
      break;
    }
    case Field::Days:
      join(entry.days, lists::oneLine(text), ",");
      break;
    case Field::Favourite:
      entry.favourite = isMark(text);
      break;
    case Field::Skip:
      entry.skip = isMark(text);
      break;
    case Field::Note:
      join(entry.note, text, "\n");
      break;
    case Field::Ignored:
      break;
  }
  return {};
}

/// A beginning without an end, and the whole day in two columns.
void settleTimes(Entry& entry) {
  const bool half = (entry.from < 0) != (entry.to < 0);
  const bool wholeDay = entry.from == 0 && (entry.to == 1440 || entry.to == 0);
  if (half || wholeDay || entry.from == 1440) entry.from = entry.to = -1;
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
    std::string reason = frequency.reason;
    if (rows.fields().size() < 3) reason = "there are too few fields for a label";
    if (!reason.empty()) {
      reading.leftOut.push_back({rows.line(), reason});
      continue;
    }
    Entry& entry = taken.entry;
    entry.frequency = frequency.frequency;
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

Writing writeKiwiCsv(std::span<const lists::EntryPtr> entries) {
  Writing writing;
  Losses losses;
  std::string& out = writing.text =
      "Freq kHz;\"Mode\";\"Ident\";\"Notes\";\"Extension\";\"Type\";PB low;PB "
      "high;Offset;\"DOW\";Begin;End;Sig bw\n";
  const auto quoted = [&out](std::string_view text) { appendQuoted(out += ';', text); };
  out.reserve(entries.size() * 100);
  lists::Entries sorted(entries.begin(), entries.end());
  std::ranges::stable_sort(sorted, {},
                           [](const lists::EntryPtr& entry) { return entry->frequency; });
  for (const lists::EntryPtr& each : sorted) {
    const Entry& entry = *each;
    losses.countParts(entry, Losses::Tags | Losses::Favourite | Losses::Skip);
    losses.countLines(entry);
    losses.countFurther(entry, kKiwi);
    if (std::ranges::any_of(entry.further, isOptionOfJsonAlone))
      losses.count("options that only KiwiSDR's JSON has");
    out += lists::khzText(entry.frequency);
    quoted(wordFor(entry, kKiwiModes, "IQ", losses, kKiwi));
    quoted(asKiwiText(entry.name));
    quoted(asKiwiText(entry.note));
    quoted(keptField(entry, kKiwi, kKiwiExtension));
    const std::string type = kiwiTypeOfGroup(entry.group);
    if (type.empty() && !entry.group.empty())
      losses.count("its group, which is no type of KiwiSDR's");
    quoted(type);
    const Setting low = kiwiPassbandLow(entry);
    if (entry.width > 0)
      out += ';' + std::to_string(low) + ';' + std::to_string(low + entry.width);
    else
      out += ";;";
    appendTableField(out += ';', keptField(entry, kKiwi, kKiwiOffset), ';');
    quoted(kiwiDays(entry, losses));
    out += entry.from < 0
               ? ";;"
               : ";'" + lists::minuteText(entry.from) + ";'" + lists::minuteText(entry.to);
    appendTableField(out += ';', keptField(entry, kKiwi, kKiwiSignal), ';');
    out += '\n';
  }
  writing.losses = losses.words();
  return writing;
}

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
    if (frequency.frequency <= 0) {
      reading.leftOut.push_back({rows.line(), frequency.reason});
      continue;
    }
    Taken taken;
    taken.place = rows.line();
    taken.entry.frequency = frequency.frequency;
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
  Writing writing;
  Losses losses;
  std::string& out = writing.text = "Freq (Hz),Enable,Notes,Channel,Ch BW (Hz),TH (dB),Sq (dB)\n";
  out.reserve(entries.size() * 60);
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry, Losses::Mode | Losses::Group | Losses::Tags | Losses::Times |
                                  Losses::Days | Losses::Favourite | Losses::Note);
    losses.countFurther(*entry, kSdrAngel);
    const auto kept = [&](std::size_t field) {
      appendTableField(out += ',', keptField(*entry, kSdrAngel, kScannerFields[field]), ',');
    };
    out += std::to_string(entry->frequency) + (entry->skip ? ",false," : ",true,");
    appendTableField(out, entry->name, ',');
    kept(0);
    out += ',';
    if (entry->width > 0) out += std::to_string(entry->width);
    kept(1);
    kept(2);
    out += '\n';
  }
  writing.losses = losses.words();
  return writing;
}

TableShape guessShape(std::string_view text, char delimiter) {
  TableShape shape;
  shape.delimiter = delimiter != 0 ? delimiter : guessedDelimiter(text);
  TableRows rows(text.substr(0, 200'000), shape.delimiter);
  std::vector<std::string> first;
  bool numbers = false;
  for (std::size_t row = 0; row < kMostTitleRows && !shape.heading && rows.next(); ++row) {
    if (isHeadingRow(rows)) {
      shape.heading = true;
      shape.rowsBefore = row;
      first = rows.fields();
    } else if (!numbers && !rows.raw().starts_with('#')) {
      numbers = holdsNumber(rows);
      if (numbers || first.empty()) first = rows.fields();
    }
  }
  if (first.empty()) return shape;
  if (shape.heading) {
    const bool own = isOwnHeading(first);
    for (const std::string& heading : first) {
      const bool beside = own && shape.fields.size() >= kOwnColumns.size();
      Field field = beside ? Field::Ignored : fieldOfHeading(heading);
      // Of two columns of one kind the first is used; names and notes are joined.
      const bool twice = std::ranges::find(shape.fields, field) != shape.fields.end();
      if (twice && field != Field::Note) field = Field::Ignored;
      if (field == Field::Frequency) shape.unit = unitOfHeading(heading);
      shape.headings.push_back(heading);
      shape.fields.push_back(field);
    }
    return shape;
  }
  // Without a heading: the first column of numbers is the frequency, the first of words the name.
  for (std::size_t column = 0; column < first.size(); ++column) {
    shape.headings.push_back("Column " + std::to_string(column + 1));
    const auto has = [&](Field field) {
      return std::ranges::find(shape.fields, field) != shape.fields.end();
    };
    Field field = Field::Ignored;
    const auto mode = lists::modeOfWord(first[column]);
    if (lists::readFrequency(first[column], lists::Unit::Guess).frequency > 0) {
      if (!has(Field::Frequency))
        field = Field::Frequency;
      else if (!has(Field::Width))
        field = Field::Width;
    } else if (mode && *mode >= 0 && !has(Field::Mode)) {
      field = Field::Mode;
    } else if (!has(Field::Name)) {
      field = Field::Name;
    } else if (!has(Field::Note)) {
      field = Field::Note;
    }
    shape.fields.push_back(field);
  }
  return shape;
}

namespace {

/// Names for the columns that this program does not know, each another: a heading may be empty, or
/// stand there twice.
std::vector<std::string> columnNames(const TableShape& shape) {
  std::vector<std::string> names;
  std::set<std::string> taken;
  for (std::size_t column = 0; column < shape.headings.size(); ++column) {
    const std::string number = std::to_string(column + 1);
    std::string name = lists::oneLine(shape.headings[column]);
    name = std::string(trimmed(name));
    if (name.empty()) name = "Column " + number;
    if (!taken.insert(name).second) taken.insert(name += " (column " + number + ")");
    names.push_back(std::move(name));
  }
  return names;
}

}  // namespace

Reading readAnyTable(std::string_view text, const TableShape& shape) {
  Reading reading;
  reading.shape = shape;
  if (std::ranges::find(shape.fields, Field::Frequency) == shape.fields.end()) {
    reading.refusal = "No column of it says a frequency.";
    return reading;
  }
  const std::vector<std::string> names = columnNames(shape);
  TableRows rows(text, shape.delimiter);
  for (std::size_t row = 0; shape.heading && row <= shape.rowsBefore && rows.next(); ++row) {
    if (row < shape.rowsBefore && !rows.raw().starts_with('#'))
      reading.leftOut.push_back({rows.line(), "it stands before the headings"});
  }
  while (rows.next()) {
    if (rows.raw().starts_with('#')) continue;
    Taken taken;
    taken.place = rows.line();
    std::string reason;
    const std::size_t columns = std::min(shape.fields.size(), rows.fields().size());
    for (std::size_t column = 0; column < columns && reason.empty(); ++column)
      reason = takeField(shape.fields[column], rows.field(column), shape.unit, taken);
    if (reason.empty() && taken.entry.frequency <= 0) reason = "there is no frequency";
    if (!reason.empty()) {
      reading.leftOut.push_back({rows.line(), reason});
      continue;
    }
    if (shape.heading) {
      for (std::size_t column = 0; column < columns; ++column) {
        if (shape.fields[column] == Field::Ignored && !rows.field(column).empty())
          taken.entry.further.emplace_back(names[column], rows.field(column));
      }
    }
    settleTimes(taken.entry);
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

Writing writeAnyTable(std::span<const lists::EntryPtr> entries) {
  Writing writing;
  Losses losses;
  std::vector<std::string> further;
  for (const lists::EntryPtr& entry : entries) {
    for (const auto& [name, value] : entry->further) {
      // Few differ: a list's further columns are the same in all its entries.
      if (std::ranges::find(further, name) == further.end()) further.push_back(name);
    }
  }
  std::string& out = writing.text;
  out.reserve(entries.size() * 100);
  for (const std::string_view column : kOwnColumns) (out += out.empty() ? "" : ",") += column;
  for (const std::string& name : further) appendTableField(out += ',', name, ',');
  out += "\r\n";
  for (const lists::EntryPtr& each : entries) {
    const Entry& entry = *each;
    losses.countLines(entry);
    out += lists::khzText(entry.frequency);
    const auto field = [&out](std::string_view text) { appendTableField(out += ',', text, ','); };
    field(entry.name);
    field(modeName(entry.mode));
    field(entry.width > 0 ? std::to_string(entry.width) : std::string());
    field(entry.group);
    field(entry.tags);
    field(lists::timesText(entry));
    field(entry.days);
    field(entry.favourite ? "yes" : "");
    field(entry.skip ? "yes" : "");
    field(entry.note);
    for (const std::string& name : further) {
      const auto there =
          std::ranges::find(entry.further, name, [](const auto& pair) { return pair.first; });
      field(there == entry.further.end() ? std::string_view() : there->second);
    }
    out += "\r\n";
  }
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
