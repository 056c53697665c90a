#include "components/ambrel/formats/list_format.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "components/ambrel/formats/format_parts.h"
#include "components/ambrel/lists/own_file.h"

namespace kelvane::formats {

namespace {

constexpr std::array<FormatName, static_cast<std::size_t>(Format::Count)> kNames = {{
    {"My stations", "my-stations.txt"},
    {"gqrx bookmarks", "bookmarks.csv"},
    {"SDR++ bookmarks", "bookmarks.json"},
    {"SDR++ settings", "frequency_manager_config.json"},
    {"CHIRP CSV", "memories.csv"},
    {"SDR# frequencies", "frequencies.xml"},
    {"KiwiSDR labels", "dx.json"},
    {"KiwiSDR CSV", "dx.csv"},
    {"OpenWebRX bookmarks", "bookmarks.json"},
    {"SDRangel scanner", "frequencies.csv"},
    {"CSV with headings", "stations.csv"},
}};

/// The text that begins with a quote, up to its other one.
std::string_view quotedText(std::string_view text) {
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '"') return text.substr(1, at - 1);
    if (text[at] == '\\') ++at;
  }
  return text.substr(1);
}

/// What the first known member of the outermost object says of the whole. Names further inside are
/// the operator's own.
Format recognisedObject(std::string_view text) {
  int depth = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '{' || text[at] == '[') ++depth;
    if (text[at] == '}' || text[at] == ']') --depth;
    if (text[at] != '"') continue;
    const std::string_view name = quotedText(text.substr(at));
    at += name.size() + 1;
    const auto next = text.find_first_not_of(" \t\n", at + 1);
    if (depth != 1 || next == text.npos || text[next] != ':') continue;
    if (name == "dx") return Format::KiwiJson;
    if (name == "bookmarks" || name == "lists" || name == "selectedList")
      return Format::SdrPlusPlus;
  }
  return Format::SdrPlusPlus;
}

/// Rows in rows are labels of KiwiSDR, objects bookmarks of OpenWebRX.
Format recognisedArray(std::string_view text) {
  const auto second = text.find_first_not_of(" \t\n", 1);
  return second != text.npos && text[second] == '[' ? Format::KiwiJson : Format::OpenWebRx;
}

/// The first line that is neither empty nor a comment.
std::string_view firstLine(std::string_view text) {
  while (!text.empty()) {
    const auto end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    if (!line.empty() && line.front() != '#') return line;
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
  return {};
}

Reading readOwn(const std::string& text) {
  Reading reading;
  reading.format = Format::Own;
  lists::OwnText own = lists::readOwnText(text);
  reading.refusal = own.refusal;
  reading.taken.reserve(own.entries.size());
  for (std::size_t i = 0; i < own.entries.size(); ++i)
    reading.taken.push_back({*own.entries[i], own.entriesAt[i], {}});
  for (std::size_t i = 0; i < own.unread.size(); ++i)
    reading.leftOut.push_back({own.unreadAt[i], own.reasons[i]});
  return reading;
}

Reading readAs(Format format, std::string text) {
  switch (format) {
    case Format::Own:
      return readOwn(text);
    case Format::Gqrx:
      return readGqrx(text);
    case Format::SdrPlusPlus:
    case Format::SdrPlusPlusSettings:
      return readSdrPlusPlus(text);
    case Format::Chirp:
      return readChirp(text);
    case Format::SdrSharp:
      return readSdrSharp(std::move(text));
    case Format::KiwiJson:
      return readKiwiJson(text);
    case Format::KiwiCsv:
      return readKiwiCsv(text);
    case Format::OpenWebRx:
      return readOpenWebRx(text);
    case Format::SdrAngel:
      return readSdrAngel(text);
    default:
      return readAnyTable(text, guessShape(text));
  }
}

/// Nothing that could be taken over is no list.
void judge(Reading& reading) {
  if (!reading.refusal.empty() || !reading.taken.empty()) return;
  if (reading.leftOut.empty()) {
    reading.refusal = "There is no station in it.";
    return;
  }
  const LeftOut& first = reading.leftOut.front();
  reading.refusal = std::string("No station in it can be read. ") +
                    (reading.lines ? "Line " : "Entry ") + std::to_string(first.place) + ": " +
                    first.reason + ".";
}

}  // namespace

const FormatName& nameOf(Format format) { return kNames[static_cast<std::size_t>(format)]; }

Format recognised(const std::string& text) {
  const std::string_view all = trimmed(text);
  if (all.starts_with('{')) return recognisedObject(all);
  if (all.starts_with('[')) return recognisedArray(all);
  if (all.starts_with('<')) return Format::SdrSharp;
  const std::string_view first = firstLine(text);
  lists::Headings headings;
  if (first.starts_with("Location,") || first.starts_with("\"Location\"")) return Format::Chirp;
  if (first.starts_with("Freq kHz;") || first.starts_with("Freq kHz,")) return Format::KiwiCsv;
  if (first.find("Freq (Hz)") != first.npos && first.find("Enable") != first.npos)
    return Format::SdrAngel;
  const auto& usual = lists::usualHeadings();
  if (first.starts_with("kHz") && lists::readHeadings(first, headings) &&
      headings.columns.size() >= usual.columns.size())
    return Format::Own;
  if (all.starts_with("# Tag name") || all.starts_with("# Frequency ;") ||
      text.find("\n# Frequency ;") != text.npos)
    return Format::Gqrx;
  return Format::Csv;
}

Reading readList(std::string_view bytes) {
  std::string text = asUtf8(bytes);
  Reading reading;
  if (trimmed(text).empty()) {
    reading.refusal = "The file is empty.";
    return reading;
  }
  if (text.find('\0') != text.npos) {
    reading.refusal = bytes.starts_with("PK\3\4")
                          ? "It is a zip. A season of HFCC is loaded in the database's source (E)."
                          : "It is no text.";
    return reading;
  }
  const Format format = recognised(text);
  reading = readAs(format, std::move(text));
  judge(reading);
  return reading;
}

TableShape guessedShape(std::string_view bytes, char delimiter) {
  return guessShape(asUtf8(bytes), delimiter);
}

Reading readTable(std::string_view bytes, const TableShape& shape) {
  Reading reading = readAnyTable(asUtf8(bytes), shape);
  judge(reading);
  return reading;
}

Writing writeList(std::span<const lists::EntryPtr> entries, Format format) {
  switch (format) {
    case Format::Own:
      return {lists::ownText(entries), {}};
    case Format::Gqrx:
      return writeGqrx(entries);
    case Format::SdrPlusPlus:
      return writeSdrPlusPlus(entries, false);
    case Format::SdrPlusPlusSettings:
      return writeSdrPlusPlus(entries, true);
    case Format::Chirp:
      return writeChirp(entries);
    case Format::SdrSharp:
      return writeSdrSharp(entries);
    case Format::KiwiJson:
      return writeKiwiJson(entries);
    case Format::KiwiCsv:
      return writeKiwiCsv(entries);
    case Format::OpenWebRx:
      return writeOpenWebRx(entries);
    case Format::SdrAngel:
      return writeSdrAngel(entries);
    default:
      return writeAnyTable(entries);
  }
}

}  // namespace kelvane::formats
