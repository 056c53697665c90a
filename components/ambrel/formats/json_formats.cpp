// The lists that are JSON: SDR++'s frequency manager, OpenWebRX's bookmarks.

#include <algorithm>
#include <array>
#include <cmath>

#include "base/append_number.h"
#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/json_parts.h"
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

void appendBookmark(std::string& text, const Entry& entry, std::string_view name, Losses& losses) {
  appendJsonText(text, name);
  appendNumber(text += ": {\"bandwidth\": ", entry.width);
  appendNumber(text += ".0, \"frequency\": ", entry.frequency);
  text += ".0, \"mode\": ";
  (text += wordFor(entry, kSdrPlusPlusModes, "7", losses)) += '}';
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

using Bookmarks = std::vector<const Entry*>;

/// Each name once.
void appendBookmarks(std::string& text, const Bookmarks& bookmarks, Losses& losses) {
  UniqueNames names;
  names.reserve(bookmarks.size());
  for (std::size_t i = 0; i < bookmarks.size(); ++i) {
    const Entry& entry = *bookmarks[i];
    const std::string_view name = names.unique(entry.name);
    if (name != entry.name) losses.count("its name, which is not the only one, and gets a number");
    text += i == 0 ? "\n    " : ",\n    ";
    appendBookmark(text, entry, name, losses);
  }
}

}  // namespace

Writing writeSdrPlusPlus(std::span<const lists::EntryPtr> entries, bool settings) {
  constexpr std::string_view kGeneral = "General";
  Writing writing;
  Losses losses;
  std::map<std::string_view, Bookmarks> byGroup;
  if (entries.empty() || !settings) byGroup[settings ? kGeneral : ""].reserve(entries.size());
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry, Losses::Tags | Losses::Times | Losses::Days | Losses::Favourite |
                                  Losses::Skip | Losses::Note | (settings ? 0u : Losses::Group));
    losses.countFurther(*entry, kSdrPlusPlus);
    if (settings && entry->group.empty())
      losses.count("its place outside of all groups, and gets the list \"General\"");
    const std::string_view group = entry->group.empty() ? kGeneral : entry->group;
    byGroup[settings ? group : ""].push_back(entry.get());
  }
  std::string& out = writing.text;
  out.reserve(entries.size() * 90);
  if (!settings) {
    appendBookmarks(out += "{\n  \"bookmarks\": {", byGroup.begin()->second, losses);
    out += "\n  }\n}\n";
  } else {
    out += "{\n  \"bookmarkDisplayMode\": 1,\n  \"lists\": {";
    for (const auto& [group, bookmarks] : byGroup) {
      appendJsonText(out += out.back() == '{' ? "\n  " : ",\n  ", group);
      appendBookmarks(out += ": {\"bookmarks\": {", bookmarks, losses);
      out += "\n  }, \"showOnWaterfall\": true}";
    }
    appendJsonText(out += "\n  },\n  \"selectedList\": ", byGroup.begin()->first);
    out += "\n}\n";
  }
  writing.losses = losses.words();
  return writing;
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
  Writing writing;
  Losses losses;
  std::string& out = writing.text = "[";
  out.reserve(entries.size() * 100);
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry, Losses::Width | Losses::Group | Losses::Tags | Losses::Times |
                                  Losses::Days | Losses::Favourite);
    losses.countFurther(*entry, kOpenWebRx);
    appendJsonText(out += out.size() == 1 ? "\n  {\"name\": " : ",\n  {\"name\": ", entry->name);
    appendNumber(out += ", \"frequency\": ", entry->frequency);
    appendJsonText(out += ", \"modulation\": ",
                   wordFor(*entry, kOpenWebRxModes, "", losses, kOpenWebRx));
    if (const auto under = keptField(*entry, kOpenWebRx, kUnderlying); !under.empty())
      appendJsonText(out += ", \"underlying\": ", under);
    if (!entry->note.empty()) appendJsonText(out += ", \"description\": ", entry->note);
    if (entry->skip) out += ", \"scannable\": false";
    out += '}';
  }
  out += "\n]\n";
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
