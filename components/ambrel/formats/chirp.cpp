// CHIRP's generic CSV. It has no columns for much of a station: what it lacks is written into the
// comment, as [W=2400 G="Broadcast" X="Antenna=Loop"], and read back from there. What CHIRP alone
// has, tones and offsets, is kept among the further columns.

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/list_writing.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

constexpr Setting chirpOf(kelvane::Mode mode) { return static_cast<Setting>(mode); }

constexpr std::array<ModeWord, 12> kChirpModes = {{{chirpOf(Mode::Am), "AM"},
                                                   {chirpOf(Mode::Fm), "FM"},
                                                   {chirpOf(Mode::Fmn), "NFM"},
                                                   {chirpOf(Mode::Wfm), "WFM"},
                                                   {chirpOf(Mode::Usb), "USB"},
                                                   {chirpOf(Mode::Lsb), "LSB"},
                                                   {chirpOf(Mode::Cw), "CW"},
                                                   {chirpOf(Mode::Cwr), "CWR"},
                                                   {chirpOf(Mode::Rtty), "RTTY"},
                                                   {chirpOf(Mode::Rttyr), "RTTYR"},
                                                   {chirpOf(Mode::DataUsb), "DIG"},
                                                   {chirpOf(Mode::DataFm), "PKT"}}};

/// The word that stands where the mode is left open: CHIRP asks for one.
constexpr std::string_view kNoMode = "Auto";

constexpr std::string_view kChirp = "CHIRP";

/// What a column of a memory gets from a station; the others are CHIRP's alone.
enum class ChirpField { Usual, Location, Name, Frequency, Mode, Skip, Comment };

/// A column of a memory; `usual` stands in one of CHIRP's own where nobody said otherwise.
struct ChirpColumn {
  std::string_view heading;
  ChirpField field;
  std::string_view usual;
};
constexpr auto kChirpColumns =
    std::to_array<ChirpColumn>({{"Location", ChirpField::Location, ""},
                                {"Name", ChirpField::Name, ""},
                                {"Frequency", ChirpField::Frequency, ""},
                                {"Duplex", ChirpField::Usual, ""},
                                {"Offset", ChirpField::Usual, "0.000000"},
                                {"Tone", ChirpField::Usual, ""},
                                {"rToneFreq", ChirpField::Usual, "88.5"},
                                {"cToneFreq", ChirpField::Usual, "88.5"},
                                {"DtcsCode", ChirpField::Usual, "023"},
                                {"DtcsPolarity", ChirpField::Usual, "NN"},
                                {"RxDtcsCode", ChirpField::Usual, "023"},
                                {"CrossMode", ChirpField::Usual, "Tone->Tone"},
                                {"Mode", ChirpField::Mode, ""},
                                {"TStep", ChirpField::Usual, "5.00"},
                                {"Skip", ChirpField::Skip, ""},
                                {"Power", ChirpField::Usual, "50W"},
                                {"Comment", ChirpField::Comment, ""},
                                {"URCALL", ChirpField::Usual, ""},
                                {"RPT1CALL", ChirpField::Usual, ""},
                                {"RPT2CALL", ChirpField::Usual, ""},
                                {"DVCODE", ChirpField::Usual, ""}});

using BracketValues = std::multimap<char, std::string>;

/// Takes a value off the text: up to a blank, or in quotes. False where a quote is not closed.
bool takeValue(std::string_view& text, std::string& value) {
  if (!text.starts_with('"')) {
    value = text.substr(0, text.find(' '));
    text.remove_prefix(value.size());
    return true;
  }
  std::size_t at = 1;
  for (; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] != '\\' || at + 1 == text.size()) {
      value += text[at];
    } else {
      ++at;
      value += text[at] == 'n' ? '\n' : text[at];
    }
  }
  if (at >= text.size()) return false;
  text.remove_prefix(at + 1);
  return true;
}

/// The values in a bracket; none where it is somebody else's.
std::optional<BracketValues> readBracket(std::string_view text) {
  BracketValues values;
  while (!text.empty()) {
    if (text.size() < 2 || text[0] < 'A' || text[0] > 'Z' || text[1] != '=') return std::nullopt;
    const char key = text[0];
    text.remove_prefix(2);
    std::string value;
    if (!takeValue(text, value)) return std::nullopt;
    values.emplace(key, std::move(value));
    if (text.starts_with(' ')) text.remove_prefix(1);
  }
  return values;
}

/// The values at a comment's end, and where their bracket begins: at the first one that is ours to
/// the end, since values may hold brackets too.
std::optional<BracketValues> bracketIn(std::string_view comment, std::size_t& begin) {
  if (!comment.ends_with(']')) return std::nullopt;
  comment.remove_suffix(1);
  for (begin = comment.find('['); begin != comment.npos; begin = comment.find('[', begin + 1)) {
    if (begin > 0 && comment[begin - 1] != ' ') continue;
    if (auto values = readBracket(comment.substr(begin + 1))) return values;
  }
  return std::nullopt;
}

void takeComment(std::string_view comment, Taken& taken) {
  Entry& entry = taken.entry;
  std::size_t begin = 0;
  const auto values = bracketIn(comment, begin);
  entry.note = values ? trimmed(comment.substr(0, begin)) : comment;
  if (!values) return;
  const auto value = [&](char key) {
    const auto there = values->find(key);
    return there == values->end() ? std::string() : there->second;
  };
  if (const auto mode = modeNamed(value('M'))) entry.mode = static_cast<Setting>(*mode);
  takeWidth(value('W'), taken);
  entry.group = value('G');
  entry.tags = value('T');
  if (!lists::readTimesOf(value('U'), entry)) remark(taken, "the times cannot be read");
  entry.days = value('D');
  entry.favourite = value('F') == "1";
  const auto [first, last] = values->equal_range('X');
  for (auto each = first; each != last; ++each) {
    const auto equals = std::min(each->second.find('='), each->second.size());
    if (equals > 0 && equals + 1 < each->second.size())
      entry.further.emplace_back(each->second.substr(0, equals), each->second.substr(equals + 1));
  }
}

/// A column of a file that no station of ours has.
struct KeptColumn {
  std::size_t at;
  std::string heading;
  std::string_view usual;  ///< what is not kept
  bool isChirps;
};

std::vector<KeptColumn> keptColumns(const ColumnsByName& columns) {
  std::vector<KeptColumn> kept;
  for (std::size_t at = 0; at < columns.names().size(); ++at) {
    const std::string_view heading = trimmed(columns.names()[at]);
    if (heading.empty() || columns.of(heading) != at) continue;
    const auto known = std::ranges::find_if(kChirpColumns, [heading](const ChirpColumn& each) {
      return equalIgnoringCase(each.heading, heading);
    });
    if (known == kChirpColumns.end())
      kept.push_back({at, std::string(heading), {}, false});
    else if (known->field == ChirpField::Usual)
      kept.push_back({at, std::string(known->heading), known->usual, true});
  }
  return kept;
}

void takeKept(const std::vector<KeptColumn>& columns, const TableRows& row, Entry& entry) {
  for (const KeptColumn& column : columns) {
    const std::string_view value = row.field(column.at);
    if (value.empty() || value == column.usual) continue;
    if (column.isChirps)
      keepField(entry, kChirp, column.heading, value);
    else
      entry.further.emplace_back(column.heading, value);
  }
}

}  // namespace

Reading readChirp(std::string_view text) {
  Reading reading;
  reading.format = Format::Chirp;
  TableRows rows(text, ',');
  do {
    if (!rows.next()) return reading;
  } while (rows.field(0).starts_with('#'));
  const ColumnsByName columns(rows);
  const auto place = [&columns](const char* heading) { return columns.of(heading); };
  const std::size_t name = place("Name"), frequencyAt = place("Frequency"), mode = place("Mode"),
                    skip = place("Skip"), comment = place("Comment");
  const std::vector<KeptColumn> kept = keptColumns(columns);
  while (rows.next()) {
    if (rows.field(0).starts_with('#')) continue;
    Taken taken;
    taken.place = rows.line();
    const auto frequency = lists::readFrequency(rows.field(frequencyAt), lists::Unit::Mhz);
    std::string reason = rows.whyCut();
    if (!frequency) reason = frequency.reason();
    if (rows.fields().size() < columns.names().size())
      reason = "there are fewer fields than headings";
    if (!reason.empty()) {
      reading.leftOut.push_back({rows.line(), reason});
      continue;
    }
    taken.entry.frequency = *frequency;
    taken.entry.name = lists::oneLine(rows.field(name));
    if (rows.field(mode) != kNoMode) takeMode(rows.field(mode), kChirpModes, taken, kChirp);
    // "P" is a memory that is looked at more often, not one that is passed over.
    taken.entry.skip = equalIgnoringCase(rows.field(skip), "S");
    if (!taken.entry.skip && !rows.field(skip).empty())
      keepField(taken.entry, kChirp, "Skip", rows.field(skip));
    takeKept(kept, rows, taken.entry);
    takeComment(rows.field(comment), taken);
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

namespace {

/// Begins a value inside the brackets of a comment, whose first one begins at a place.
TextWriter& beginValue(TextWriter& text, std::size_t first, char key) {
  if (text.view().size() > first) text.add(' ');
  return text.add(key).add('=');
}

void addValue(TextWriter& text, std::size_t first, char key, std::string_view value) {
  static constexpr ByteSet kEscaped("\"\\\n");
  if (value.empty()) return;
  beginValue(text, first, key);
  const bool plain = std::ranges::all_of(value, [](char c) {
    return isDigit(c) || isCapital(c) || isSmall(c) || c == '-' || c == ',';
  });
  if (plain) {
    text.add(value);
    return;
  }
  text.add('"');
  text.addReplacing(value, kEscaped, [&text](char c) { text.add('\\').add(c == '\n' ? 'n' : c); });
  text.add('"');
}

/// All that CHIRP has no columns for, without the brackets.
void addValues(TextWriter& text, const Entry& entry, bool modeFits) {
  const std::size_t first = text.view().size();
  if (!modeFits) addValue(text, first, 'M', modeName(entry.mode));
  if (entry.width > 0) beginValue(text, first, 'W').addNumber(entry.width);
  addValue(text, first, 'G', entry.group);
  addValue(text, first, 'T', entry.tags);
  if (entry.from >= 0) lists::addTimes(beginValue(text, first, 'U'), entry);
  addValue(text, first, 'D', entry.days);
  addValue(text, first, 'F', entry.favourite ? "1" : "");
  for (const auto& [heading, value] : entry.further) {
    if (!heading.starts_with("CHIRP ")) addValue(text, first, 'X', heading + '=' + value);
  }
}

/// The note with all that CHIRP has no columns for behind it, made in `room`.
std::string_view commentOf(const Entry& entry, bool modeFits, TextWriter& room) {
  room.clear();
  room.add(entry.note).add(entry.note.empty() ? "[" : " [");
  const std::size_t first = room.view().size();
  addValues(room, entry, modeFits);
  // A note that ends as if it were a bracket of ours gets an empty one behind it.
  std::size_t begin = 0;
  if (room.view().size() == first && !bracketIn(trimmed(entry.note), begin)) return entry.note;
  return room.add(']').view();
}

/// A column of a memory, and what stands before its field.
struct Piece {
  std::string before;
  const ChirpColumn* column;
};

/// A memory's columns; with the usual ones among what stands before the others.
struct Pieces {
  explicit Pieces(bool withUsual) {
    for (const ChirpColumn& column : kChirpColumns) {
      if (&column != kChirpColumns.data()) behind += ',';
      if (withUsual && column.field == ChirpField::Usual)
        behind += column.usual;
      else
        all.push_back({std::exchange(behind, {}), &column});
    }
    behind += '\n';
  }

  std::vector<Piece> all;
  std::string behind;
};

/// The field of a column that is CHIRP's alone.
std::string_view chirpsOwn(const Entry& entry, const ChirpColumn& column) {
  const auto value = keptField(entry, kChirp, column.heading);
  return value.empty() ? column.usual : value;
}

void addChirpField(ListPart& part, std::size_t i, const Entry& entry, const ChirpColumn& column,
                   const WordsOfModes::Word& mode) {
  switch (column.field) {
    case ChirpField::Location:
      part.text.addNumber(i);
      break;
    case ChirpField::Name:
      addTableField(part.text, entry.name);
      break;
    case ChirpField::Frequency:
      lists::addMhz(part.text, entry.frequency);
      break;
    case ChirpField::Mode:
      addTableField(part.text, mode.text);
      break;
    case ChirpField::Skip:
      addTableField(part.text, entry.skip ? "S" : keptField(entry, kChirp, "Skip"));
      break;
    case ChirpField::Comment:
      addTableField(part.text, commentOf(entry, mode.fits, part.room));
      break;
    case ChirpField::Usual:
      addTableField(part.text, chirpsOwn(entry, column));
  }
}

}  // namespace

Writing writeChirp(std::span<const lists::EntryPtr> entries) {
  std::string heading;
  for (const ChirpColumn& column : kChirpColumns)
    (heading += heading.empty() ? "" : ",") += column.heading;
  heading += '\n';
  const Pieces usual(true), kept(false);
  const WordsOfModes words(kChirpModes, kNoMode, kChirp);
  return writeLines({heading, 130}, entries.size(), [&](ListPart& part, std::size_t i) {
    const Entry& entry = *entries[i];
    part.losses.countLines(entry);
    const WordsOfModes::Word mode = words.of(entry);  // one that does not fit stands in the bracket
    const Pieces& pieces = entry.further.empty() ? usual : kept;
    for (const auto& [before, column] : pieces.all) {
      part.text.add(before);
      addChirpField(part, i, entry, *column, mode);
    }
    part.text.add(pieces.behind);
  });
}

}  // namespace kelvane::formats
