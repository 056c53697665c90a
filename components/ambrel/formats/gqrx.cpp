// Bookmarks of gqrx: tags with their colours, an empty line, then five fields a line.

#include <algorithm>
#include <array>
#include <functional>
#include <set>

#include "base/append_number.h"
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
    if (fields.size() != 5 && fields.size() != 6) {
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
    taken.entry.name = lists::oneLine(fields[1]);
    takeMode(fields[2], kGqrxModes, taken, kGqrx);
    takeWidth(fields[3], taken);
    takeGroupAndTags(trimmed(fields[4]), taken.entry);
    if (fields.size() == 6) taken.entry.note = lists::oneLine(fields[5]);
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
