// Bookmarks of gqrx: tags with their colours, an empty line, then five fields a line.

#include <algorithm>
#include <array>
#include <set>

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

std::string padded(std::string_view text, std::size_t width) {
  std::string field(text);
  const std::size_t characters = characterCount(text);
  if (characters < width) field.append(width - characters, ' ');
  return field;
}

std::string rightAligned(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

/// A text without the sign that parts fields.
std::string withoutSemicolon(std::string_view text, Losses& losses) {
  std::string plain = lists::oneLine(text);
  if (plain.find(';') == plain.npos) return plain;
  losses.count("a semicolon, and gets a comma");
  std::ranges::replace(plain, ';', ',');
  return plain;
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
    if (frequency.frequency <= 0) {
      reading.leftOut.push_back({number, frequency.reason});
      continue;
    }
    Taken taken;
    taken.place = number;
    taken.entry.frequency = frequency.frequency;
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
  std::set<std::string> tags{"Untagged"};
  std::string lines;
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry, Losses::Times | Losses::Days | Losses::Favourite | Losses::Skip |
                                  Losses::Note);
    losses.countFurther(*entry, kGqrx);
    const std::string marks = withoutSemicolon(groupAndTags(*entry, losses), losses);
    for (const std::string_view tag : split(marks, ','))
      if (!tag.empty()) tags.emplace(tag);
    lines += rightAligned(std::to_string(entry->frequency), 12);
    lines += "; " + padded(withoutSemicolon(entry->name, losses), 25);
    const auto mode = wordFor(*entry, kGqrxModes, "Demod Off", losses, kGqrx);
    lines += "; " + padded(withoutSemicolon(mode, losses), 20);
    lines += "; " + rightAligned(std::to_string(entry->width), 10) + "; " + marks + '\n';
  }
  writing.text = "# Tag name          ;  color\n";
  for (const std::string& tag : tags)
    writing.text += padded(tag, 20) + (tag == "Untagged" ? "; #c0c0c0\n" : "; #a0c0ff\n");
  writing.text +=
      "\n# Frequency ; Name                     ; Modulation          ;  Bandwidth; Tags\n";
  writing.text += lines;
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
