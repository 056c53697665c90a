// Bookmarks of gqrx: tags with their colours, an empty line, then five fields a line.

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <vector>

#include "base/append_number.h"
#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/format_parts.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

constexpr std::string_view kGqrx = "gqrx";

constexpr Setting of(kelvane::Mode mode) { return static_cast<Setting>(mode); }

constexpr std::array<ModeWord, 11> kGqrxModes = {{{of(Mode::Am), "AM"},
                                                  {of(Mode::Sam), "AM-Sync"},
                                                  {of(Mode::Lsb), "LSB"},
                                                  {of(Mode::Usb), "USB"},
                                                  {of(Mode::Cw), "CW-U"},
                                                  {of(Mode::Cwr), "CW-L"},
                                                  {of(Mode::Fm), "Narrow FM"},
                                                  {of(Mode::Wfm), "WFM (stereo)"},
                                                  {of(Mode::Wfm), "WFM (mono)"},
                                                  {of(Mode::Wfm), "WFM (oirt)"},
                                                  {-1, "Demod Off"}}};

/// Appends a text without the sign that parts fields, and blanks up to a width.
void appendPadded(std::string& line, std::string_view text, std::size_t width, Losses& losses) {
  const std::size_t begin = line.size();
  line += text;
  bool semicolon = false;
  for (std::size_t at = begin; at < line.size(); ++at) {
    char& c = line[at];
    semicolon = semicolon || c == ';';
    c = c == ';' ? ',' : static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  if (semicolon) losses.count("a semicolon, and gets a comma");
  const std::size_t characters = characterCount(std::string_view(line).substr(begin));
  if (characters < width) line.append(width - characters, ' ');
}

void appendRight(std::string& line, Hz number, std::size_t width) {
  const std::size_t begin = line.size();
  appendNumber(line, number);
  const std::size_t digits = line.size() - begin;
  if (digits < width) line.insert(begin, width - digits, ' ');
}

bool isModulation(std::string_view word) {
  const auto isWord = [word](const ModeWord& each) {
    return equalIgnoringCase(each.word, trimmed(word));
  };
  return std::ranges::any_of(kGqrxModes, isWord) || lists::modeOfWord(word);
}

using Fields = std::vector<std::string_view>;

/// Where the modulation stands among a bookmark's fields; 0 where they are none. Behind it are the
/// width, the tags and perhaps a note; in front of it more than a name where that has semicolons.
std::size_t placeOfModulation(const Fields& fields) {
  if (fields.size() <= 5) return fields.size() == 5 ? 2 : 0;
  for (const std::size_t behind : {4, 3}) {
    const std::size_t at = fields.size() - behind;
    if (at >= 2 && isModulation(fields[at]) && wholeNumber(fields[at + 1])) return at;
  }
  return fields.size() == 6 ? 2 : 0;
}

/// What stands in the line from one field to another one, with the signs between them.
std::string_view joined(const Fields& fields, std::size_t from, std::size_t to) {
  const std::string_view last = fields[to - 1];
  return {fields[from].data(), last.data() + last.size()};
}

}  // namespace

Reading readGqrx(std::string_view text) {
  Reading reading;
  reading.format = Format::Gqrx;
  bool bookmarks = false;
  std::size_t number = 0;
  while (!text.empty()) {
    ++number;
    const auto end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    if (line.empty()) bookmarks = true;
    // Some files lack the empty line; the heading says the same.
    if (line.starts_with("# Frequency")) bookmarks = true;
    if (!bookmarks || line.empty() || line.front() == '#') continue;
    const auto fields = split(line, ';');
    const std::size_t mode = placeOfModulation(fields);
    if (mode == 0) {
      reading.leftOut.push_back(
          {number, "a bookmark has five fields, and this line " + std::to_string(fields.size())});
      continue;
    }
    const auto frequency = lists::readFrequency(fields[0], lists::Unit::Hz);
    if (!frequency) {
      reading.leftOut.push_back({number, frequency.reason()});
      continue;
    }
    Taken taken;
    taken.place = number;
    taken.entry.frequency = *frequency;
    taken.entry.name = lists::oneLine(joined(fields, 1, mode));
    takeMode(fields[mode], kGqrxModes, taken, kGqrx);
    takeWidth(fields[mode + 1], taken);
    takeGroupAndTags(trimmed(fields[mode + 2]), taken.entry);
    if (fields.size() > mode + 3) taken.entry.note = lists::oneLine(fields[mode + 3]);
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

Writing writeGqrx(std::span<const lists::EntryPtr> entries) {
  Writing writing;
  Losses losses;
  std::set<std::string, std::less<>> tags{"Untagged"};
  std::string lines, marks;
  lines.reserve(entries.size() * 100);
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(
        *entry, Losses::Times | Losses::Days | Losses::Favourite | Losses::Skip | Losses::Note);
    losses.countFurther(*entry, kGqrx);
    appendRight(lines, entry->frequency, 12);
    appendPadded(lines += "; ", entry->name, 25, losses);
    appendPadded(lines += "; ", wordFor(*entry, kGqrxModes, "Demod Off", losses, kGqrx), 20,
                 losses);
    appendRight(lines += "; ", entry->width, 10);
    marks.clear();
    appendGroupAndTags(marks, *entry, losses);
    const std::size_t begin = (lines += "; ").size();
    appendPadded(lines, marks, 0, losses);
    for (std::string_view left = std::string_view(lines).substr(begin); !left.empty();) {
      const std::string_view tag = left.substr(0, left.find(','));
      if (!tag.empty() && !tags.contains(tag)) tags.emplace(tag);
      left.remove_prefix(std::min(tag.size() + 1, left.size()));
    }
    lines += '\n';
  }
  std::string& out = writing.text = "# Tag name          ;  color\n";
  for (const std::string& tag : tags) {
    appendPadded(out, tag, 20, losses);
    out += tag == "Untagged" ? "; #c0c0c0\n" : "; #a0c0ff\n";
  }
  out += "\n# Frequency ; Name                     ; Modulation          ;  Bandwidth; Tags\n";
  out += lines;
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
