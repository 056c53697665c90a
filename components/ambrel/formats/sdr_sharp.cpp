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

constexpr Setting sharpOf(kelvane::Mode mode) { return static_cast<Setting>(mode); }

constexpr std::array<ModeWord, 8> kSdrSharpModes = {{{sharpOf(Mode::Fm), "NFM"},
                                                     {sharpOf(Mode::Wfm), "WFM"},
                                                     {sharpOf(Mode::Am), "AM"},
                                                     {sharpOf(Mode::Dsb), "DSB"},
                                                     {sharpOf(Mode::Lsb), "LSB"},
                                                     {sharpOf(Mode::Usb), "USB"},
                                                     {sharpOf(Mode::Cw), "CW"},
                                                     {-1, "RAW"}}};

/// The text behind a tag that begins here: at the ">" that stands in none of its values.
std::size_t endOfTag(std::string_view text) {
  char quote = 0;
  for (std::size_t at = 1; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at + 1;
    }
  }
  return text.size();
}

/// Why a text is not given to the library, which goes as deep as the elements lie in each other;
/// empty where it may.
std::string whyNotParsed(std::string_view text) {
  int depth = 0;
  const auto past = [&text](std::string_view end) {
    const auto at = text.find(end);
    text.remove_prefix(at == text.npos ? text.size() : at + end.size());
  };
  for (auto at = text.find('<'); at != text.npos; at = text.find('<')) {
    text.remove_prefix(at);
    if (text.starts_with("<!--")) {
      past("-->");
    } else if (text.starts_with("<![CDATA[")) {
      past("]]>");
    } else if (text.starts_with("<?")) {
      past("?>");
    } else if (text.starts_with("<!")) {
      return "It has declarations, which no such list has.";
    } else {
      const std::string_view tag = text.substr(0, endOfTag(text));
      if (tag.starts_with("</"))
        --depth;
      else if (!tag.ends_with("/>") && ++depth > kDeepest)
        return "It is nested deeper than " + std::to_string(kDeepest) + " times.";
      text.remove_prefix(tag.size());
    }
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
  takeMode(child(node, "DetectorType"), kSdrSharpModes, taken);
  takeWidth(child(node, "FilterBandwidth"), taken);
  const auto shift = trimmed(child(node, "Shift"));
  if (!shift.empty() && shift != "0") taken.entry.further.emplace_back("SDR# Shift", shift);
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
  const std::string original = text;
  try {
    document->parse<rapidxml::parse_validate_closing_tags>(text.data());
  } catch (const rapidxml::parse_error& error) {
    const auto at = error.where<char>() - text.data();
    const auto line = 1 + std::count(original.begin(), original.begin() + at, '\n');
    reading.refusal = "The file is damaged or cut off in line " + std::to_string(line) + ".";
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
  for (const lists::EntryPtr& entry : entries) {
    losses.countParts(*entry,
                      Losses::Tags | Losses::Times | Losses::Days | Losses::Skip | Losses::Note);
    out += "  <MemoryEntry>\n    <IsFavourite>";
    out += entry->favourite ? "true" : "false";
    appendXmlText(out += "</IsFavourite>\n    <Name>", entry->name);
    appendXmlText(out += "</Name>\n    <GroupName>", entry->group);
    out += "</GroupName>\n    <Frequency>" + std::to_string(entry->frequency);
    (out += "</Frequency>\n    <DetectorType>") += wordFor(*entry, kSdrSharpModes, "RAW", losses);
    std::string shift = "0";
    for (const auto& [name, value] : entry->further) {
      if (name == "SDR# Shift")
        shift = value;
      else
        losses.count("further columns");
    }
    appendXmlText(out += "</DetectorType>\n    <Shift>", shift);
    out += "</Shift>\n    <FilterBandwidth>" + std::to_string(entry->width) +
           "</FilterBandwidth>\n  </MemoryEntry>\n";
  }
  out += "</ArrayOfMemoryEntry>\n";
  writing.losses = losses.words();
  return writing;
}

}  // namespace kelvane::formats
