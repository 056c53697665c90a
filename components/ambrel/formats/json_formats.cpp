// The lists that are JSON: SDR++'s frequency manager, OpenWebRX's bookmarks.

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/json_parts.h"
#include "components/ambrel/formats/list_writing.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

constexpr Setting modeOf(kelvane::Mode mode) { return static_cast<Setting>(mode); }

/// Nested brackets outside of texts, at the deepest place.
bool tooDeep(std::string_view text) {
  int depth = 0;
  bool inText = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inText) {
      if (c == '\\') ++i;
      if (c == '"') inText = false;
    } else if (c == '"') {
      inText = true;
    } else if (c == '[' || c == '{') {
      if (++depth > kDeepest) return true;
    } else if (c == ']' || c == '}') {
      --depth;
    }
  }
  return false;
}

constexpr std::string_view kSdrPlusPlus = "SDR++";

/// By their numbers in SDR++.
constexpr std::array<ModeWord, 8> kSdrPlusPlusModes = {{{modeOf(Mode::Fm), "0"},
                                                        {modeOf(Mode::Wfm), "1"},
                                                        {modeOf(Mode::Am), "2"},
                                                        {modeOf(Mode::Dsb), "3"},
                                                        {modeOf(Mode::Usb), "4"},
                                                        {modeOf(Mode::Cw), "5"},
                                                        {modeOf(Mode::Lsb), "6"},
                                                        {-1, "7"}}};

constexpr std::array<ModeWord, 8> kOpenWebRxModes = {{{modeOf(Mode::Am), "am"},
                                                      {modeOf(Mode::Usb), "usb"},
                                                      {modeOf(Mode::Lsb), "lsb"},
                                                      {modeOf(Mode::Cw), "cw"},
                                                      {modeOf(Mode::Fm), "nfm"},
                                                      {modeOf(Mode::Wfm), "wfm"},
                                                      {modeOf(Mode::Sam), "sam"},
                                                      {modeOf(Mode::Drm), "drm"}}};

constexpr std::string_view kOpenWebRx = "OpenWebRX";
/// The mode in which a digital one is received.
constexpr const char* kUnderlying = "underlying";

/// The frequency of a bookmark, which SDR++ and OpenWebRX write alike.
Result<Hz> frequencyIn(const Json& bookmark) {
  if (!bookmark.is_object()) return Failure{"it is no bookmark"};
  const auto there = bookmark.find("frequency");
  if (there == bookmark.end()) return Failure{"there is no frequency"};
  return frequencyOf(*there, 1);
}

void takeBookmarks(const Json& bookmarks, const std::string& group, Reading& reading,
                   std::size_t& number) {
  reading.taken.reserve(reading.taken.size() + bookmarks.size());
  for (const auto& [name, bookmark] : bookmarks.get_ref<const Json::object_t&>()) {
    ++number;
    const auto frequency = frequencyIn(bookmark);
    if (!frequency) {
      reading.leftOut.push_back({number, "\"" + name.substr(0, 60) + "\": " + frequency.reason()});
      continue;
    }
    Taken taken;
    taken.place = number;
    taken.entry.frequency = *frequency;
    taken.entry.name = lists::oneLine(name);
    taken.entry.group = group;
    const double width = numberOf(bookmark, "bandwidth", 0);
    if (width > 0 && width <= 10'000'000)
      taken.entry.width = static_cast<Setting>(std::lround(width));
    const double mode = numberOf(bookmark, "mode", 7);
    takeMode(std::to_string(mode >= 0 && mode < 100 ? static_cast<int>(mode) : 99),
             kSdrPlusPlusModes, taken);
    reading.taken.push_back(std::move(taken));
  }
}

}  // namespace

Json readJson(const std::string& text, Reading& reading) {
  reading.lines = false;
  if (tooDeep(text)) {
    reading.refusal = "It is nested deeper than " + std::to_string(kDeepest) + " times.";
    return Json(Json::value_t::discarded);
  }
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    const std::size_t end = std::min(error.byte, text.size());
    const auto line =
        1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n');
    reading.refusal = "The file is damaged or cut off in line " + std::to_string(line) + ".";
  }
  return Json(Json::value_t::discarded);
}

std::string textOf(const Json& object, const char* member) {
  const auto there = object.find(member);
  return there != object.end() && there->is_string() ? there->get<std::string>() : std::string();
}

double numberOf(const Json& object, const char* member, double otherwise) {
  const auto there = object.find(member);
  return there != object.end() && there->is_number() ? there->get<double>() : otherwise;
}

Result<Hz> frequencyOf(const Json& number, double unit) {
  if (!number.is_number()) return Failure{"there is no frequency"};
  const double hertz = number.get<double>() * unit;
  if (!(hertz >= 0.5)) return Failure{"the frequency is 0"};
  if (hertz > kHighestHz) return Failure{"the frequency is above the most, 2147 MHz"};
  return static_cast<Hz>(std::llround(hertz));
}

Reading readSdrPlusPlus(const std::string& text) {
  Reading reading;
  reading.format = Format::SdrPlusPlus;
  const Json json = readJson(text, reading);
  if (!reading.refusal.empty()) return reading;
  std::size_t number = 0;
  if (json.is_object() && json.contains("bookmarks") && json["bookmarks"].is_object()) {
    takeBookmarks(json["bookmarks"], {}, reading, number);
    return reading;
  }
  reading.format = Format::SdrPlusPlusSettings;
  if (!json.is_object() || !json.contains("lists") || !json["lists"].is_object()) {
    reading.refusal = "There are no bookmarks of SDR++ in it.";
    return reading;
  }
  for (const auto& [name, list] : json["lists"].items()) {
    if (!list.is_object()) continue;
    // Older files have the bookmarks right there.
    const bool nested = list.contains("bookmarks") && list["bookmarks"].is_object();
    takeBookmarks(nested ? list["bookmarks"] : list, lists::oneLine(name), reading, number);
  }
  return reading;
}

namespace {

constexpr std::string_view kGeneral = "General";

/// An entry with a name that no other one of its list has.
struct Bookmark {
  const Entry* entry;
  std::string_view name;
  std::string_view begins;  ///< the name of the list whose first one it is
};

/// A list of SDR++'s. The one that is exported has no name.
struct BookmarkList {
  std::string_view name;
  UniqueNames names;  ///< keeps those that got a number
  std::vector<Bookmark> bookmarks;

  void add(const Entry& entry) {
    const bool first = bookmarks.empty();
    bookmarks.push_back({&entry, names.unique(entry.name), first ? name : std::string_view()});
  }
};
using BookmarkLists = std::deque<BookmarkList>;

BookmarkLists oneList(std::span<const lists::EntryPtr> entries) {
  BookmarkLists all;
  BookmarkList& list = all.emplace_back(std::string_view(), UniqueNames(entries.size()));
  list.bookmarks.reserve(entries.size());
  for (const lists::EntryPtr& entry : entries) list.add(*entry);
  return all;
}

/// A list for each group, by their names.
BookmarkLists listsOfGroups(std::span<const lists::EntryPtr> entries) {
  TextNumbers groups;
  BookmarkLists all;
  for (const lists::EntryPtr& entry : entries) {
    const std::string_view group = entry->group.empty() ? kGeneral : entry->group;
    const TextNumbers::Number number = groups.of(group);
    if (number.isNew) all.emplace_back(group, UniqueNames());
    all[number.value].add(*entry);
  }
  if (all.empty()) all.emplace_back(kGeneral, UniqueNames());
  std::ranges::sort(all, {}, &BookmarkList::name);
  return all;
}

/// The bookmarks of all lists one behind the other.
std::vector<Bookmark> joinedLists(BookmarkLists& all) {
  if (all.size() == 1) return std::move(all.front().bookmarks);
  std::size_t count = 0;
  for (const BookmarkList& list : all) count += list.bookmarks.size();
  std::vector<Bookmark> bookmarks;
  bookmarks.reserve(count);
  for (const BookmarkList& list : all)
    bookmarks.insert(bookmarks.end(), list.bookmarks.begin(), list.bookmarks.end());
  return bookmarks;
}

void addListHead(TextWriter& out, std::string_view name) {
  addJsonText(out.add("\n  "), name);
  out.add(": {\"bookmarks\": {");
}
constexpr std::string_view kListFoot = "\n  }, \"showOnWaterfall\": true}";

void addBookmark(ListPart& part, std::size_t i, const Bookmark& bookmark,
                 const WordsOfModes& words) {
  const Entry& entry = *bookmark.entry;
  TextWriter& out = part.text;
  if (!bookmark.begins.empty()) {
    if (i > 0) out.add(kListFoot).add(',');
    addListHead(out, bookmark.begins);
  }
  if (bookmark.name != entry.name) part.losses.count(Losses::NameTwice);
  out.add(i == 0 || !bookmark.begins.empty() ? "\n    " : ",\n    ");
  addJsonText(out, bookmark.name);
  out.add(": {\"bandwidth\": ").addNumber(entry.width);
  out.add(".0, \"frequency\": ").addNumber(entry.frequency);
  out.add(".0, \"mode\": ").add(words.wordFor(entry, part.losses)).add('}');
}

/// What both of SDR++'s files lose of an entry.
constexpr unsigned kLostInSdrPlusPlus =
    Losses::Tags | Losses::Times | Losses::Days | Losses::Favourite | Losses::Skip | Losses::Note;

Writing writeBookmarks(BookmarkLists all, const ListFrame& frame, bool settings) {
  const std::vector<Bookmark> bookmarks = joinedLists(all);
  const WordsOfModes words(kSdrPlusPlusModes, "7");
  const unsigned lost = kLostInSdrPlusPlus | (settings ? 0u : Losses::Group);
  return writeLines(frame, bookmarks.size(), [&](ListPart& part, std::size_t i) {
    const Entry& entry = *bookmarks[i].entry;
    part.losses.countParts(entry, lost);
    part.losses.countFurther(entry, kSdrPlusPlus);
    if (settings && entry.group.empty()) part.losses.count(Losses::PlaceOutsideOfGroups);
    addBookmark(part, i, bookmarks[i], words);
  });
}

}  // namespace

Writing writeSdrPlusPlus(std::span<const lists::EntryPtr> entries, bool settings) {
  constexpr std::size_t kUsualLine = 90;
  if (!settings)
    return writeBookmarks(oneList(entries), {"{\n  \"bookmarks\": {", kUsualLine, "\n  }\n}\n"},
                          false);
  BookmarkLists all = listsOfGroups(entries);
  TextWriter head, foot;
  head.add("{\n  \"bookmarkDisplayMode\": 1,\n  \"lists\": {");
  if (entries.empty()) addListHead(head, all.front().name);
  foot.add(kListFoot).add("\n  },\n  \"selectedList\": ");
  addJsonText(foot, all.front().name);
  foot.add("\n}\n");
  return writeBookmarks(std::move(all), {head.view(), kUsualLine, foot.view()}, true);
}

Reading readOpenWebRx(const std::string& text) {
  Reading reading;
  reading.format = Format::OpenWebRx;
  const Json json = readJson(text, reading);
  if (!reading.refusal.empty()) return reading;
  if (!json.is_array()) {
    reading.refusal = "There are no bookmarks of OpenWebRX in it.";
    return reading;
  }
  std::size_t number = 0;
  reading.taken.reserve(json.size());
  for (const Json& bookmark : json) {
    ++number;
    const auto frequency = frequencyIn(bookmark);
    if (!frequency) {
      reading.leftOut.push_back({number, frequency.reason()});
      continue;
    }
    Taken taken;
    taken.place = number;
    taken.entry.frequency = *frequency;
    taken.entry.name = lists::oneLine(textOf(bookmark, "name"));
    takeMode(textOf(bookmark, "modulation"), kOpenWebRxModes, taken, kOpenWebRx);
    taken.entry.note = trimmed(textOf(bookmark, "description"));
    taken.entry.skip = bookmark.contains("scannable") && bookmark["scannable"] == false;
    if (const std::string under = textOf(bookmark, kUnderlying); !under.empty())
      keepField(taken.entry, kOpenWebRx, kUnderlying, lists::oneLine(under));
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

Writing writeOpenWebRx(std::span<const lists::EntryPtr> entries) {
  const WordsOfModes words(kOpenWebRxModes, "", kOpenWebRx);
  return writeLines({"[", 100, "\n]\n"}, entries.size(), [&](ListPart& part, std::size_t i) {
    const Entry& entry = *entries[i];
    part.losses.countParts(entry, Losses::Width | Losses::Group | Losses::Tags | Losses::Times |
                                      Losses::Days | Losses::Favourite);
    part.losses.countFurther(entry, kOpenWebRx);
    TextWriter& out = part.text;
    addJsonText(out.add(i == 0 ? "\n  {\"name\": " : ",\n  {\"name\": "), entry.name);
    out.add(", \"frequency\": ").addNumber(entry.frequency);
    addJsonText(out.add(", \"modulation\": "), words.wordFor(entry, part.losses));
    if (const auto under = keptField(entry, kOpenWebRx, kUnderlying); !under.empty())
      addJsonText(out.add(", \"underlying\": "), under);
    if (!entry.note.empty()) addJsonText(out.add(", \"description\": "), entry.note);
    if (entry.skip) out.add(", \"scannable\": false");
    out.add('}');
  });
}

}  // namespace kelvane::formats
