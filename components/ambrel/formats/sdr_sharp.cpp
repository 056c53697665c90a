// SDR#'s frequencies.xml.

#include <algorithm>
#include <array>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "components/ambrel/formats/list_writing.h"
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

bool isXmlBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// The first place from `at` on with one of the signs that end a name, or the text's end.
std::size_t pastName(std::string_view text, std::size_t at, std::string_view ends) {
  while (at < text.size() && !isXmlBlank(text[at]) && ends.find(text[at]) == npos) ++at;
  return at;
}

std::size_t pastBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() && isXmlBlank(text[at])) ++at;
  return at;
}

/// How long the name is with which a tag begins.
std::size_t nameSize(std::string_view tag) {
  std::size_t at = 1;
  // Hardly any has other signs than letters.
  while (at < tag.size() && tag[at] >= 'A') ++at;
  return (tag.substr(at).starts_with('>') ? at : pastName(tag, at, "/>?")) - 1;
}

/// Where the tag that begins the text with a name of that size ends, as the library reads it; npos
/// where it is damaged. A quote begins a value behind a "=" alone; elsewhere it is a letter of a
/// name.
std::size_t endOfTag(std::string_view text, std::size_t nameSize) {
  for (std::size_t at = 1 + nameSize;;) {
    at = pastBlanks(text, at);
    if (at == text.size()) return npos;
    if (text[at] == '>') return at + 1;
    if (text[at] == '/') return text.substr(at).starts_with("/>") ? at + 2 : npos;
    at = pastBlanks(text, pastName(text, at, "/<>=?!"));
    if (at == text.size() || text[at] != '=') return npos;
    at = pastBlanks(text, at + 1);
    if (at == text.size() || (text[at] != '"' && text[at] != '\'')) return npos;
    at = text.find(text[at], at + 1);
    if (at == npos) return npos;
    ++at;
  }
}

std::string damagedIn(std::string_view text, std::size_t at) {
  const auto line = 1 + std::ranges::count(text.substr(0, at), '\n');
  return "The file is damaged or cut off in line " + std::to_string(line) + ".";
}

/// Where a comment, a text as it stands or an instruction ends that begins at a place; that place
/// where none of them does, npos where it has no end. The library passes over just the same.
std::size_t pastUnread(std::string_view text, std::size_t at) {
  struct Unread {
    std::string_view begin, end;
  };
  constexpr std::array<Unread, 3> kUnread = {{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};
  for (const Unread& each : kUnread) {
    if (!text.substr(at).starts_with(each.begin)) continue;
    const auto end = text.find(each.end, at + each.begin.size());
    return end == npos ? npos : end + each.end.size();
  }
  return at;
}

/// The elements that are open at a place of a text, which the library parses one in the other.
class OpenElements {
 public:
  /// False where they lie too deep in each other.
  bool open(std::size_t nameSize) {
    if (depth_ == sizes_.size()) return false;
    sizes_[depth_++] = nameSize;
    return true;
  }
  /// How far the tag reaches that begins a text and ends an element. One that does not end with the
  /// name of the element ends the library's work too.
  std::size_t close(std::string_view text) {
    if (depth_ > 0) --depth_;
    const std::size_t usual = 2 + sizes_[depth_];
    if (usual < text.size() && text[usual] == '>') return usual + 1;
    return std::min(text.find('>'), text.size() - 1) + 1;
  }

 private:
  std::array<std::size_t, kDeepest> sizes_{};
  std::size_t depth_ = 0;
};

/// Why a text is not given to the library, which goes as deep as the elements lie in each other;
/// empty where it may.
std::string whyNotParsed(std::string_view text) {
  OpenElements elements;
  for (auto at = text.find('<'); at != npos && at + 1 < text.size(); at = text.find('<', at)) {
    const char next = text[at + 1];
    if (next == '/') {
      at += elements.close(text.substr(at));
    } else if (next == '!' || next == '?') {
      const std::size_t past = pastUnread(text, at);
      if (past == at) return "It has declarations, which no such list has.";
      if (past == npos) return damagedIn(text, text.size());
      at = past;
    } else {
      const std::string_view tag = text.substr(at);
      const std::size_t name = nameSize(tag), size = endOfTag(tag, name);
      if (size == npos) return damagedIn(text, at);
      at += size;
      if (text[at - 2] != '/' && !elements.open(name))
        return "It is nested deeper than " + std::to_string(kDeepest) + " times.";
    }
  }
  return {};
}

using Node = rapidxml::xml_node<char>;

/// The elements of an entry that are known; of several of one name the first.
struct SharpFields {
  std::string_view frequency, name, group, favourite, detector, width, shift;

  explicit SharpFields(const Node& entry) {
    for (const Node* node = entry.first_node(); node; node = node->next_sibling()) {
      std::string_view* const value = fieldOf({node->name(), node->name_size()});
      if (value && !value->data()) *value = std::string_view(node->value(), node->value_size());
    }
  }

 private:
  /// Their lengths part all but two from each other.
  std::string_view* fieldOf(std::string_view element) {
    switch (element.size()) {
      case 4:
        return element == "Name" ? &name : nullptr;
      case 5:
        return element == "Shift" ? &shift : nullptr;
      case 9:
        return element == "Frequency" ? &frequency : element == "GroupName" ? &group : nullptr;
      case 11:
        return element == "IsFavourite" ? &favourite : nullptr;
      case 12:
        return element == "DetectorType" ? &detector : nullptr;
      case 15:
        return element == "FilterBandwidth" ? &width : nullptr;
      default:
        return nullptr;
    }
  }
};

void takeEntry(const Node& node, std::size_t number, Reading& reading) {
  const SharpFields fields(node);
  const auto frequency = lists::readFrequency(fields.frequency, lists::Unit::Hz);
  if (!frequency) return reading.leftOut.push_back({number, frequency.reason()});
  Taken& taken = reading.taken.emplace_back();
  taken.place = number;
  taken.entry.frequency = *frequency;
  taken.entry.name = lists::oneLine(fields.name);
  taken.entry.group = lists::oneLine(fields.group);
  taken.entry.favourite = trimmed(fields.favourite) == "true";
  takeMode(fields.detector, kSdrSharpModes, taken, kSdrSharp);
  takeWidth(fields.width, taken);
  const auto shift = trimmed(fields.shift);
  if (!shift.empty() && shift != "0") keepField(taken.entry, kSdrSharp, "Shift", shift);
}

}  // namespace

Reading readSdrSharp(std::string text) {
  Reading reading;
  reading.format = Format::SdrSharp;
  reading.lines = false;
  reading.refusal = whyNotParsed(text);
  if (!reading.refusal.empty()) return reading;
  const auto document = std::make_unique<rapidxml::xml_document<char>>();
  try {
    // An element has its text as its value: nodes of their own for texts double the work. Without
    // zeros behind names and values the lines can still be counted.
    document->parse<rapidxml::parse_validate_closing_tags | rapidxml::parse_no_data_nodes |
                    rapidxml::parse_no_string_terminators>(text.data());
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
  for (const Node* node = root->first_node(); node; node = node->next_sibling()) ++number;
  reading.taken.reserve(std::exchange(number, 0));
  for (const Node* node = root->first_node("MemoryEntry"); node;
       node = node->next_sibling("MemoryEntry"))
    takeEntry(*node, ++number, reading);
  return reading;
}

Writing writeSdrSharp(std::span<const lists::EntryPtr> entries) {
  constexpr ListFrame kFrame{
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
      "<ArrayOfMemoryEntry xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">\n",
      320, "</ArrayOfMemoryEntry>\n"};
  const WordsOfModes words(kSdrSharpModes, "RAW", kSdrSharp);
  return writeLines(kFrame, entries.size(), [entries, &words](ListPart& part, std::size_t i) {
    const Entry& entry = *entries[i];
    part.losses.countParts(
        entry, Losses::Tags | Losses::Times | Losses::Days | Losses::Skip | Losses::Note);
    part.losses.countFurther(entry, kSdrSharp);
    TextWriter& out = part.text;
    out.add("  <MemoryEntry>\n    <IsFavourite>").add(entry.favourite ? "true" : "false");
    addXmlText(out.add("</IsFavourite>\n    <Name>"), entry.name);
    addXmlText(out.add("</Name>\n    <GroupName>"), entry.group);
    out.add("</GroupName>\n    <Frequency>").addNumber(entry.frequency);
    addXmlText(out.add("</Frequency>\n    <DetectorType>"), words.wordFor(entry, part.losses));
    const auto shift = keptField(entry, kSdrSharp, "Shift");
    addXmlText(out.add("</DetectorType>\n    <Shift>"), shift.empty() ? "0" : shift);
    out.add("</Shift>\n    <FilterBandwidth>").addNumber(entry.width);
    out.add("</FilterBandwidth>\n  </MemoryEntry>\n");
  });
}

}  // namespace kelvane::formats
