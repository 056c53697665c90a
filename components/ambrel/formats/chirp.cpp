// CHIRP's generic CSV. It has no columns for much of a station: what it lacks is written into the
// comment, as [W=2400 G="Broadcast"], and read back from there.

#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/formats/format_parts.h"
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

constexpr std::string_view kHeading =
    "Location,Name,Frequency,Duplex,Offset,Tone,rToneFreq,cToneFreq,DtcsCode,DtcsPolarity,"
    "RxDtcsCode,"
    "CrossMode,Mode,TStep,Skip,Power,Comment,URCALL,RPT1CALL,RPT2CALL,DVCODE\n";

/// A value inside the brackets of a comment.
void appendValue(std::string& text, std::string_view key, std::string_view value) {
  if (value.empty()) return;
  if (!text.empty()) text += ' ';
  (text += key) += '=';
  const bool plain = std::ranges::all_of(value, [](char c) {
    return isDigit(c) || isCapital(c) || isSmall(c) || c == '-' || c == ',';
  });
  if (plain) {
    text += value;
    return;
  }
  text += '"';
  for (const char c : value) {
    if (c == '"' || c == '\\') text += '\\';
    if (c == '\n')
      text += "\\n";
    else
      text += c;
  }
  text += '"';
}

std::string bracketOf(const Entry& entry, bool modeFits) {
  std::string text;
  if (!modeFits) appendValue(text, "M", modeName(entry.mode));
  appendValue(text, "W", entry.width > 0 ? std::to_string(entry.width) : "");
  appendValue(text, "G", entry.group);
  appendValue(text, "T", entry.tags);
  appendValue(text, "U", lists::timesText(entry));
  appendValue(text, "D", entry.days);
  appendValue(text, "F", entry.favourite ? "1" : "");
  return text.empty() ? text : '[' + text + ']';
}

/// The values in a bracket; none where it is somebody else's.
std::optional<std::map<std::string, std::string, std::less<>>> readBracket(std::string_view text) {
  std::map<std::string, std::string, std::less<>> values;
  while (!text.empty()) {
    const auto equals = text.find('=');
    if (equals == 0 || equals == text.npos || equals > 2) return std::nullopt;
    const std::string key(text.substr(0, equals));
    text.remove_prefix(equals + 1);
    std::string value;
    if (text.starts_with('"')) {
      std::size_t at = 1;
      for (; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
          value += text[at];
        } else {
          ++at;
          value += text[at] == 'n' ? '\n' : text[at];
        }
      }
      if (at >= text.size()) return std::nullopt;
      text.remove_prefix(at + 1);
    } else {
      value = text.substr(0, text.find(' '));
      text.remove_prefix(value.size());
    }
    values[key] = value;
    if (text.starts_with(' ')) text.remove_prefix(1);
  }
  return values;
}

void takeComment(std::string_view comment, Taken& taken) {
  Entry& entry = taken.entry;
  const auto open = comment.rfind(" [");
  const std::size_t start = comment.starts_with('[') && open == comment.npos ? 0 : open;
  entry.note = comment;
  if (!comment.ends_with(']') || start == comment.npos) return;
  std::string_view inside = comment.substr(start);
  inside.remove_prefix(inside.find('[') + 1);
  inside.remove_suffix(1);
  const auto values = readBracket(inside);
  if (!values) return;
  entry.note = trimmed(comment.substr(0, start));
  const auto value = [&](std::string_view key) {
    const auto there = values->find(key);
    return there == values->end() ? std::string() : there->second;
  };
  if (const auto mode = modeNamed(value("M"))) entry.mode = static_cast<Setting>(*mode);
  takeWidth(value("W"), taken);
  entry.group = value("G");
  entry.tags = value("T");
  if (!lists::readTimesOf(value("U"), entry)) remark(taken, "the times cannot be read");
  entry.days = value("D");
  entry.favourite = value("F") == "1";
}

}  // namespace

Reading readChirp(std::string_view text) {
  Reading reading;
  reading.format = Format::Chirp;
  TableRows rows(text, ',');
  std::map<std::string, std::size_t> columns;
  std::size_t width = 0;
  const auto field = [&](const char* heading) {
    const auto there = columns.find(heading);
    return there == columns.end() ? std::string_view() : rows.field(there->second);
  };
  while (rows.next()) {
    if (rows.field(0).starts_with('#')) continue;
    if (columns.empty()) {
      for (const std::string& heading : rows.fields()) columns.emplace(heading, columns.size());
      width = rows.fields().size();
      continue;
    }
    Taken taken;
    taken.place = rows.line();
    const auto frequency = lists::readFrequency(field("Frequency"), lists::Unit::Mhz);
    std::string reason = frequency.reason();
    if (rows.fields().size() < width) reason = "there are fewer fields than headings";
    if (!reason.empty()) {
      reading.leftOut.push_back({rows.line(), reason});
      continue;
    }
    taken.entry.frequency = *frequency;
    taken.entry.name = lists::oneLine(field("Name"));
    if (field("Mode") != kNoMode) takeMode(field("Mode"), kChirpModes, taken);
    taken.entry.skip = !field("Skip").empty() && field("Skip") != "P";
    takeComment(field("Comment"), taken);
    reading.taken.push_back(std::move(taken));
  }
  return reading;
}

Writing writeChirp(std::span<const lists::EntryPtr> entries) {
  Writing writing;
  Losses losses;
  writing.text = kHeading;
  std::size_t location = 0;
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry, Losses::Further);
    Losses inBracket;  // the mode itself stands there
    const std::string_view mode = wordFor(*entry, kChirpModes, kNoMode, inBracket);
    const std::string bracket = bracketOf(*entry, inBracket.words().empty());
    std::string comment = entry->note;
    if (!bracket.empty()) comment += (comment.empty() ? "" : " ") + bracket;
    std::string& out = writing.text;
    out += std::to_string(location++) + ',';
    appendTableField(out, entry->name, ',');
    (out += ',') += lists::mhzText(entry->frequency);
    (out += ",,0.000000,,88.5,88.5,023,NN,023,Tone->Tone,") += mode;
    (out += ",5.00,") += entry->skip ? "S" : "";
    appendTableField(out += ",50W,", comment, ',');
    out += ",,,,\n";
  }
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
