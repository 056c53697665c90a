#include "components/ambrel/lists/own_file.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/encoding.h"
#include "base/in_parts.h"
#include "base/number.h"
#include "base/text.h"
#include "base/text_writer.h"
#include "components/ambrel/lists/entry_texts.h"
#include "components/ambrel/lists/further_columns.h"
#include "contract/modes.h"

namespace kelvane::lists {

namespace {

constexpr std::string_view kHead =
    "# My stations: the operator's own list. UTF-8; one station a line, its columns parted by "
    "\";\".\r\n"
    "# kHz        with a decimal point where need be; it must be there, all else may be empty\r\n"
    "# Mode       AM FM USB LSB CW RTTY FAX SAM DRM and what else the receivers have\r\n"
    "# Width      bandwidth in Hz\r\n"
    "# Tags       words parted by commas\r\n"
    "# UTC        0600-0800; empty for the whole day\r\n"
    "# Days       Mo-Fr, SaSu, 1245 (1 is Monday), 1.Sa (the month's first); empty for every "
    "day\r\n"
    "# Favourite, Skip   yes or empty; what is skipped is passed over when you walk through the "
    "list\r\n"
    "# In a text \\: stands for a semicolon, \\n for a new line and \\\\ for a backslash.\r\n"
    "# Columns may stand in another order, and columns of your own may be added: the line below\r\n"
    "# names them. Lines that begin with \"#\" are comments; yours are kept.\r\n";

constexpr std::array<std::string_view, static_cast<std::size_t>(Column::Count)> kHeadings = {
    "kHz", "Name", "Mode", "Width", "Group", "Tags", "UTC", "Days", "Favourite", "Skip", "Note"};

constexpr std::string_view kUnreadHead = "# Lines that were not understood:\r\n";

void addField(TextWriter& text, std::string_view field) {
  static constexpr ByteSet kEscaped(";\\\n\r");
  text.addReplacing(field, kEscaped, [&text](char c) {
    if (c != '\r') text.add(c == ';' ? "\\:" : c == '\\' ? "\\\\" : "\\n");
  });
}

std::string unescaped(std::string_view field) {
  field = trimmed(field);
  if (field.find('\\') == field.npos) return std::string(field);
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\' || i + 1 == field.size()) {
      text += field[i];
      continue;
    }
    const char next = field[++i];
    if (next == ':')
      text += ';';
    else if (next == 'n')
      text += '\n';
    else if (next == '\\')
      text += next;
    else
      (text += '\\') += next;
  }
  return text;
}

/// What must be neither escaped nor parted.
bool isYes(std::string_view text) {
  return equalIgnoringCase(text, "yes") || text == "1" || equalIgnoringCase(text, "true") ||
         equalIgnoringCase(text, "x");
}

/// What is wrong with a field, nullptr for nothing.
const char* takeField(Column column, std::string_view field, Entry& entry) {
  switch (column) {
    case Column::Khz: {
      const Result<Hz> read = readFrequency(field, Unit::Khz);
      entry.frequency = read ? *read : -1;
      return read ? nullptr : "the frequency cannot be read";
    }
    case Column::Name:
      entry.name = unescaped(field);
      return nullptr;
    case Column::Mode: {
      const auto mode = field.empty() ? std::nullopt : modeNamed(field);
      if (!field.empty() && !mode) return "the mode is unknown";
      entry.mode = mode ? static_cast<Setting>(*mode) : -1;
      return nullptr;
    }
    case Column::Width: {
      const auto width = field.empty() ? 0 : wholeNumber(field);
      if (!width || *width < 0 || *width > 10'000'000) return "the width is no bandwidth in Hz";
      entry.width = static_cast<Setting>(*width);
      return nullptr;
    }
    case Column::Group:
      entry.group = unescaped(field);
      return nullptr;
    case Column::Tags:
      entry.tags = unescaped(field);
      return nullptr;
    case Column::Utc:
      return readTimesOf(field, entry) ? nullptr : "the times cannot be read";
    case Column::Days:
      entry.days = unescaped(field);
      return nullptr;
    case Column::Favourite:
      entry.favourite = isYes(field);
      return nullptr;
    case Column::Skip:
      entry.skip = isYes(field);
      return nullptr;
    case Column::Note:
      entry.note = unescaped(field);
      return nullptr;
    case Column::Count:
      break;
  }
  return nullptr;
}

std::string_view takeUpTo(std::string_view& rest, char end) {
  const auto at = rest.find(end);
  const std::string_view part = rest.substr(0, at);
  rest = at == rest.npos ? std::string_view() : rest.substr(at + 1);
  return part;
}

void addEntry(TextWriter& text, const Entry& entry, std::span<const std::string_view> further) {
  addKhz(text, entry.frequency);
  // Empty fields at the end of a line are left out.
  std::size_t filled = text.size();
  const auto field = [&text, &filled](bool there, auto add) {
    text.add(" ; ");
    if (!there) return;
    add();
    filled = text.size();
  };
  const auto words = [&](std::string_view value) {
    field(!value.empty(), [&] { addField(text, value); });
  };
  words(entry.name);
  words(modeName(entry.mode));
  field(entry.width > 0, [&] { text.addNumber(entry.width); });
  words(entry.group);
  words(entry.tags);
  field(entry.from >= 0, [&] { addTimes(text, entry); });
  words(entry.days);
  words(entry.favourite ? "yes" : "");
  words(entry.skip ? "yes" : "");
  words(entry.note);
  for (const std::string_view name : further) words(furtherField(entry, name));
  text.cutTo(filled);
  text.add("\r\n");
}

std::string lineOf(const Entry& entry) {
  std::vector<std::string_view> further;
  for (const auto& [name, value] : entry.further) further.push_back(name);
  TextWriter line;
  addEntry(line, entry, further);
  for (const std::string_view name : further) line.add(name).add('\n');
  return line.take();
}

/// What stands before the stations.
void addHead(TextWriter& text, std::span<const std::string> comments,
             std::span<const std::string_view> further) {
  text.add(kHead);
  for (const std::string& comment : comments) text.add(comment).add("\r\n");
  for (const std::string_view heading : kHeadings)
    text.add(heading == kHeadings.front() ? "" : " ; ").add(heading);
  for (const std::string_view name : further) addField(text.add(" ; "), name);
  text.add("\r\n");
}

/// How many more of each text one row has than another, by the text.
using Counts = std::unordered_map<std::string, long>;

template <class Row, class Text>
void mergeRows(const Row& base, const Row& mine, Row& theirs, Text textOf) {
  Counts more;
  for (const auto& each : mine) ++more[textOf(each)];
  for (const auto& each : base) --more[textOf(each)];
  std::erase_if(theirs, [&](const auto& each) {
    const auto there = more.find(textOf(each));
    if (there == more.end() || there->second >= 0) return false;
    ++there->second;
    return true;
  });
  for (const auto& each : mine) {
    const auto there = more.find(textOf(each));
    if (there == more.end() || there->second <= 0) continue;
    --there->second;
    theirs.push_back(each);
  }
}

}  // namespace

const Headings& usualHeadings() {
  static const Headings usual = [] {
    Headings all;
    for (int i = 0; i < static_cast<int>(Column::Count); ++i)
      all.columns.push_back(static_cast<Column>(i));
    return all;
  }();
  return usual;
}

bool readHeadings(std::string_view line, Headings& headings) {
  Headings read;
  bool frequency = false;
  for (std::string_view rest = line; !rest.empty();) {
    const std::string name = unescaped(takeUpTo(rest, ';'));
    const auto known = std::ranges::find_if(
        kHeadings, [&](std::string_view each) { return equalIgnoringCase(each, name); });
    const auto column = static_cast<Column>(known - kHeadings.begin());
    // A heading that stands there twice names an unknown column the second time.
    const bool twice = std::ranges::find(read.columns, column) != read.columns.end();
    const bool taken = known != kHeadings.end() && !twice;
    read.columns.push_back(taken ? column : Column::Count);
    if (!taken) read.unknown.push_back(name);
    frequency = frequency || (taken && column == Column::Khz);
  }
  if (!frequency) return false;
  headings = std::move(read);
  return true;
}

const char* readOwnLine(std::string_view line, const Headings& headings, Entry& entry) {
  std::size_t unknown = 0;
  std::size_t at = 0;
  std::string_view rest = line;
  for (; at < headings.columns.size() && !rest.empty(); ++at) {
    const std::string_view field = trimmed(takeUpTo(rest, ';'));
    if (headings.columns[at] == Column::Count) {
      const std::string& name = headings.unknown[unknown++];
      if (!field.empty()) entry.further.emplace_back(name, unescaped(field));
    } else if (const char* problem = takeField(headings.columns[at], field, entry)) {
      return problem;
    }
  }
  if (!trimmed(rest).empty()) return "there are more fields than headings";
  return entry.frequency > 0 ? nullptr : "the frequency cannot be read";
}

OwnText readOwnText(std::string_view bytes) {
  OwnText list;
  if (bytes.find('\0') != bytes.npos) {
    list.refusal = "It is no text.";
    return list;
  }
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  const std::string latin = isUtf8(bytes) ? std::string() : utf8FromLatin1(bytes);
  std::string_view rest = latin.empty() ? bytes : std::string_view(latin);
  std::string_view head = kHead;
  Headings headings = usualHeadings();
  bool headed = false;
  for (std::size_t number = 1; !rest.empty(); ++number) {
    const std::string_view line = trimmed(takeUpTo(rest, '\n'));
    if (line.empty()) continue;
    if (line.front() == '#') {
      // Lines of a head, this version's in its order, are made anew; other comments are kept.
      const auto known = head.find(line);
      if (known != head.npos)
        head.remove_prefix(known + line.size());
      else if (line != trimmed(kUnreadHead))
        list.comments.emplace_back(line);
      continue;
    }
    if (!headed && list.entries.empty() && readHeadings(line, headings)) {
      headed = true;
      continue;
    }
    auto entry = std::make_shared<Entry>();
    if (const char* problem = readOwnLine(line, headings, *entry)) {
      list.unread.emplace_back(line);
      list.unreadAt.push_back(number);
      list.reasons.push_back(problem);
    } else {
      list.entries.push_back(std::move(entry));
      list.entriesAt.push_back(static_cast<std::uint32_t>(number));
    }
  }
  return list;
}

std::string ownText(std::span<const EntryPtr> entries, std::span<const std::string> comments,
                    std::span<const std::string> unread) {
  constexpr std::size_t kWorthAThread = 5'000, kUsualLine = 100;
  std::vector<std::string_view> further = furtherHeadings(entries);
  std::ranges::sort(further);
  const auto write = [&](TextWriter& text, std::size_t i, std::size_t end) {
    const bool first = i == 0;  // to which the others are joined
    text.reserve((first ? entries.size() : end - i) * kUsualLine);
    if (first) addHead(text, comments, further);
    for (; i < end; ++i) addEntry(text, *entries[i], further);
  };
  std::vector<TextWriter> parts = inParts<TextWriter>(entries.size(), kWorthAThread, write);
  TextWriter& text = parts.front();
  for (const TextWriter& part : std::span(parts).subspan(1)) text.add(part.view());
  if (!unread.empty()) text.add(kUnreadHead);
  for (const std::string& line : unread) text.add(line).add("\r\n");
  return text.take();
}

std::string ownText(const OwnText& list) {
  return ownText(list.entries, list.comments, list.unread);
}

OwnText merged(const OwnText& base, const OwnText& mine, OwnText theirs) {
  const auto same = [](const std::string& line) { return line; };
  mergeRows(base.entries, mine.entries, theirs.entries,
            [](const EntryPtr& entry) { return lineOf(*entry); });
  mergeRows(base.comments, mine.comments, theirs.comments, same);
  mergeRows(base.unread, mine.unread, theirs.unread, same);
  return theirs;
}

}  // namespace kelvane::lists
