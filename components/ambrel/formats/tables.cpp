// Any table with delimiters, read by its headings.

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/list_writing.h"
#include "components/ambrel/lists/further_columns.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

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
    if (isCapital(c) || static_cast<unsigned char>(c) >= 0x80)
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
  return bool(lists::readFrequency(field, lists::Unit::Guess));
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

/// Takes one field; answers what is wrong with it where the row is of no use then.
std::string takeField(Field field, std::string_view text, lists::Unit unit, Taken& taken) {
  Entry& entry = taken.entry;
  const auto join = [](std::string& whole, std::string_view more, const char* between) {
    if (!more.empty()) (whole += whole.empty() ? "" : between) += more;
  };
  switch (field) {
    case Field::Frequency: {
      const auto read = lists::readFrequency(text, unit);
      entry.frequency = read ? *read : -1;
      return read.reason();
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
    if (lists::readFrequency(first[column], lists::Unit::Guess)) {
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
    std::string reason = rows.whyCut();
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
  const std::vector<std::string_view> further = lists::furtherHeadings(entries);
  TextWriter heading;
  for (const std::string_view column : kOwnColumns)
    heading.add(column == kOwnColumns.front() ? "" : ",").add(column);
  for (const std::string_view name : further) addTableField(heading.add(','), name);
  heading.add("\r\n");
  const ListFrame frame{heading.view(), 100};
  return writeLines(frame, entries.size(), [entries, &further](ListPart& part, std::size_t i) {
    const Entry& entry = *entries[i];
    TextWriter& out = part.text;
    part.losses.countLines(entry);
    lists::addKhz(out, entry.frequency);
    const auto field = [&out](std::string_view text) { addTableField(out.add(','), text); };
    field(entry.name);
    out.add(',').add(modeName(entry.mode)).add(',');
    if (entry.width > 0) out.addNumber(entry.width);
    field(entry.group);
    field(entry.tags);
    lists::addTimes(out.add(','), entry);
    field(entry.days);
    out.add(entry.favourite ? ",yes" : ",").add(entry.skip ? ",yes" : ",");
    field(entry.note);
    for (const std::string_view name : further) field(lists::furtherField(entry, name));
    out.add("\r\n");
  });
}

}  // namespace kelvane::formats
