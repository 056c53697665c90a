// SDR#'s frequencies.xml.

#include <algorithm>
#include <array>
#include <memory>
#include <rapidxml/rapidxml.hpp>

#include "base/text.h"
#include "components/ambrel/formats/format_parts.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

constexpr std::string_view kSdrSharp = "SDR#";

constexpr Setting sharpOf(kelvane::Mode mode) { return static_cast<Setting>(mode); }

constexpr std::array<ModeWord, 8> kSdrSharpModes = {{{sharpOf(Mode::Fm), "NFM"},
                                                     {sharpOf(Mode::Wfm), "WFM"},
                                                     {sharpOf(Mode::Am), "AM"},
                                                     {sharpOf(Mode::Dsb), "DSB"},
                                                     {sharpOf(Mode::Lsb), "LSB"},
                                                     {sharpOf(Mode::Usb), "USB"},
                                                     {sharpOf(Mode::Cw), "CW"},
                                                     {-1, "RAW"}}};

constexpr auto npos = std::string_view::npos;

/// Where the tag that begins the text ends, as the library reads it; npos where it is damaged. A
/// quote begins a value behind a "=" alone; elsewhere it is a letter of a name.
std::size_t endOfTag(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  std::size_t at = text.find_first_of(" \t\r\n/>?");
  for (;;) {
    at = text.find_first_not_of(kBlanks, at);
    if (at == npos || text[at] == '>') return at == npos ? npos : at + 1;
    if (text[at] == '/') return text.substr(at).starts_with("/>") ? at + 2 : npos;
    at = text.find_first_not_of(kBlanks, text.find_first_of(" \t\r\n/<>=?!", at));
    if (at == npos || text[at] != '=') return npos;
    at = text.find_first_not_of(kBlanks, at + 1);
    if (at == npos || (text[at] != '"' && text[at] != '\'')) return npos;
    at = text.find(text[at], at + 1);
    if (at == npos) return npos;
    ++at;
  }
}

std::string damagedIn(std::string_view text, std::size_t at) {
  const auto line = 1 + std::ranges::count(text.substr(0, at), '\n');
  return "The file is damaged or cut off in line " + std::to_string(line) + ".";
}

/// Why a text is not given to the library, which goes as deep as the elements lie in each other;
/// empty where it may. What is passed over here is just what the library passes over.
std::string whyNotParsed(std::string_view text) {
  struct Passed {
    std::string_view begin, end;
  };
  constexpr std::array<Passed, 3> kPassed = {{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};
  int depth = 0;
  for (auto at = text.find('<'); at != npos; at = text.find('<', at)) {
    const std::string_view rest = text.substr(at);
    const auto passed = std::ranges::find_if(
        kPassed, [rest](const Passed& each) { return rest.starts_with(each.begin); });
    if (passed != kPassed.end()) {
      const auto end = text.find(passed->end, at + passed->begin.size());
      if (end == npos) return damagedIn(text, text.size());
      at = end + passed->end.size();
      continue;
    }
    if (rest.starts_with("<!")) return "It has declarations, which no such list has.";
    const bool closes = rest.starts_with("</");
    const std::size_t size =
        closes ? std::min(rest.find('>'), rest.size() - 1) + 1 : endOfTag(rest);
    if (size == npos) return damagedIn(text, at);
    if (closes)
      --depth;
    else if (!rest.substr(0, size).ends_with("/>") && ++depth > kDeepest)
      return "It is nested deeper than " + std::to_string(kDeepest) + " times.";
    at += size;
  }
  return {};
}

using Node = rapidxml::xml_node<char>;

std::string_view child(const Node& node, const char* name) {
  const Node* const there = node.first_node(name);
  return there ? std::string_view(there->value(), there->value_size()) : std::string_view();
}

void takeEntry(const Node& node, std::size_t number, Reading& reading) {
  const auto frequency = lists::readFrequency(child(node, "Frequency"), lists::Unit::Hz);
  if (!frequency) return reading.leftOut.push_back({number, frequency.reason()});
  Taken taken;
  taken.place = number;
  taken.entry.frequency = *frequency;
  taken.entry.name = lists::oneLine(child(node, "Name"));
  taken.entry.group = lists::oneLine(child(node, "GroupName"));
  taken.entry.favourite = trimmed(child(node, "IsFavourite")) == "true";
  takeMode(child(node, "DetectorType"), kSdrSharpModes, taken, kSdrSharp);
  takeWidth(child(node, "FilterBandwidth"), taken);
  const auto shift = trimmed(child(node, "Shift"));
  if (!shift.empty() && shift != "0") keepField(taken.entry, kSdrSharp, "Shift", shift);
  reading.taken.push_back(std::move(taken));
}

}  // namespace

Reading readSdrSharp(std::string text) {
  Reading reading;
  reading.format = Format::SdrSharp;
  reading.lines = false;
  reading.refusal = whyNotParsed(text);
  if (!reading.refusal.empty()) return reading;
  // The library reads up to a zero.
  if (text.find('\0') != text.npos) {
    reading.refusal = "It is no text.";
    return reading;
  }
  const auto document = std::make_unique<rapidxml::xml_document<char>>();
  try {
    // Without zeros behind names and values the lines can still be counted.
    document->parse<rapidxml::parse_validate_closing_tags | rapidxml::parse_no_string_terminators>(
        text.data());
  } catch (const rapidxml::parse_error& error) {
    reading.refusal = damagedIn(text, static_cast<std::size_t>(error.where<char>() - text.data()));
    return reading;
  }
  const Node* const root = document->first_node("ArrayOfMemoryEntry");
  if (!root) {
    reading.refusal = "There are no frequencies of SDR# in it.";
    return reading;
  }
  std::size_t number = 0;
  for (const Node* node = root->first_node("MemoryEntry"); node;
       node = node->next_sibling("MemoryEntry"))
    takeEntry(*node, ++number, reading);
  return reading;
}

Writing writeSdrSharp(std::span<const lists::EntryPtr> entries) {
  Writing writing;
  Losses losses;
  std::string& out = writing.text =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
      "<ArrayOfMemoryEntry xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">\n";
  out.reserve(entries.size() * 320);
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry,
                      Losses::Tags | Losses::Times | Losses::Days | Losses::Skip | Losses::Note);
    out += "  <MemoryEntry>\n    <IsFavourite>";
    out += entry->favourite ? "true" : "false";
    appendXmlText(out += "</IsFavourite>\n    <Name>", entry->name);
    appendXmlText(out += "</Name>\n    <GroupName>", entry->group);
    out += "</GroupName>\n    <Frequency>" + std::to_string(entry->frequency);
    losses.countFurther(*entry, kSdrSharp);
    appendXmlText(out += "</Frequency>\n    <DetectorType>",
                  wordFor(*entry, kSdrSharpModes, "RAW", losses, kSdrSharp));
    const auto shift = keptField(*entry, kSdrSharp, "Shift");
    appendXmlText(out += "</DetectorType>\n    <Shift>", shift.empty() ? "0" : shift);
    out += "</Shift>\n    <FilterBandwidth>" + std::to_string(entry->width) +
           "</FilterBandwidth>\n  </MemoryEntry>\n";
  }
  out += "</ArrayOfMemoryEntry>\n";
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
