// Bookmarks of gqrx: tags with their colours, an empty line, then five fields a line.

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <set>
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

/// Adds a text without the sign that parts fields, and blanks up to a width in characters.
void addPadded(TextWriter& line, std::string_view text, std::size_t width, Losses& losses) {
  static constexpr ByteSet kOtherwise(";", ByteSet::Controls::Among);
  bool semicolon = false;
  line.addReplacing(text, kOtherwise, [&](char c) {
    semicolon = semicolon || c == ';';
    line.add(c == ';' ? ',' : ' ');
  });
  if (semicolon) losses.count(Losses::Semicolon);
  const std::size_t characters = width > 0 ? characterCount(text) : 0;
  if (characters < width) line.add(width - characters, ' ');
}

void addRight(TextWriter& line, Hz number, std::size_t width) {
  std::array<char, 12> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  const auto count = static_cast<std::size_t>(end - digits.data());
  if (count < width) line.add(width - count, ' ');
  line.add({digits.data(), count});
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

namespace {

struct GqrxPart : ListPart {
  std::set<std::string, std::less<>> tags;
};

/// The tags in a text of a bookmark.
void collectTags(std::string_view marks, std::set<std::string, std::less<>>& tags) {
  while (!marks.empty()) {
    const std::string_view tag = marks.substr(0, marks.find(','));
    if (!tag.empty() && !tags.contains(tag)) tags.emplace(tag);
    marks.remove_prefix(std::min(tag.size() + 1, marks.size()));
  }
}

void addGqrxLine(GqrxPart& part, const Entry& entry, const WordsOfModes& words) {
  auto& [line, losses, marks] = static_cast<ListPart&>(part);
  losses.countParts(entry,
                    Losses::Times | Losses::Days | Losses::Favourite | Losses::Skip | Losses::Note);
  losses.countFurther(entry, kGqrx);
  addRight(line, entry.frequency, 12);
  addPadded(line.add("; "), entry.name, 25, losses);
  addPadded(line.add("; "), words.wordFor(entry, losses), 20, losses);
  addRight(line.add("; "), entry.width, 10);
  marks.clear();
  addGroupAndTags(marks, entry, losses);
  line.add("; ");
  const std::size_t begin = line.view().size();
  addPadded(line, marks.view(), 0, losses);
  collectTags(line.view().substr(begin), part.tags);
  line.add('\n');
}

}  // namespace

Writing writeGqrx(std::span<const lists::EntryPtr> entries) {
  const WordsOfModes words(kGqrxModes, "Demod Off", kGqrx);
  const auto parts = writtenParts<GqrxPart>(
      {{}, 100}, entries.size(),
      [&](GqrxPart& part, std::size_t i) { addGqrxLine(part, *entries[i], words); });
  ListPart all;
  std::set<std::string, std::less<>> tags{std::string(kUntagged)};
  std::size_t size = 0;
  for (const GqrxPart& part : parts) {
    tags.insert(part.tags.begin(), part.tags.end());
    all.losses.add(part.losses);
    size += part.text.view().size();
  }
  all.text.reserve(size + 1000 + tags.size() * 40);
  all.text.add("# Tag name          ;  color\n");
  for (const std::string& tag : tags) {
    addPadded(all.text, tag, 20, all.losses);
    all.text.add(tag == kUntagged ? "; #c0c0c0\n" : "; #a0c0ff\n");
  }
  all.text.add(
      "\n# Frequency ; Name                     ; Modulation          ;  Bandwidth; Tags\n");
  for (const GqrxPart& part : parts) all.text.add(part.text.view());
  return {all.text.take(), all.losses.words()};
}

}  // namespace kelvane::formats
