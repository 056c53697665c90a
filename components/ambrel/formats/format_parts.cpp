#include "components/ambrel/formats/format_parts.h"

#include <algorithm>

#include "base/number.h"
#include "base/text.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

/// Quoted fields run over no more lines than this.
constexpr int kMostLinesOfField = 20;

constexpr std::string_view kUntagged = "Untagged", kModeField = "mode";

/// In the order of Losses::Part.
constexpr std::array<std::string_view, 9> kParts = {
    "the mode", "the width",          "the group",     "the tags", "the times",
    "the days", "the favourite mark", "the skip mark", "the note"};

std::string columnOfField(std::string_view program, std::string_view field) {
  return std::string(program).append(" ").append(field);
}

/// What a word means by a program's own words, else by the usual ones.
std::optional<Setting> meaningOf(std::string_view word, std::span<const ModeWord> words) {
  for (const ModeWord& each : words) {
    if (equalIgnoringCase(each.word, word)) return each.mode;
  }
  return lists::modeOfWord(word);
}

std::string_view wordOf(Setting mode, std::span<const ModeWord> words) {
  const auto there = std::ranges::find(words, mode, &ModeWord::mode);
  return there == words.end() ? modeName(mode) : there->word;
}

}  // namespace

void TableRows::startField() {
  if (count_ == fields_.size()) fields_.emplace_back();
  fields_[count_++].clear();
}

void TableRows::cutPlain() {
  count_ = 0;
  std::string_view left = raw_;
  for (;;) {
    const auto at = left.find(delimiter_);
    startField();
    fields_[count_ - 1].assign(trimmed(left.substr(0, at)));
    if (at == left.npos) return;
    left.remove_prefix(at + 1);
  }
}

/// Cuts a row with quotes; false where a quote is not closed.
bool TableRows::cutQuoted() {
  count_ = 0;
  std::size_t at = 0;
  int lines = 0;
  for (bool more = true; more;) {
    startField();
    std::string& field = fields_[count_ - 1];
    while (at < rest_.size() && rest_[at] == ' ' && delimiter_ != ' ') ++at;
    if (at < rest_.size() && rest_[at] == '"') {
      for (++at;; ++at) {
        if (at == rest_.size()) return false;
        if (rest_[at] == '\n' && ++lines > kMostLinesOfField) return false;
        if (rest_[at] == '"') {
          if (at + 1 == rest_.size() || rest_[at + 1] != '"') break;
          ++at;
        }
        field += rest_[at];
      }
      ++at;
    }
    const std::size_t from = at;
    while (at < rest_.size() && rest_[at] != delimiter_ && rest_[at] != '\n') ++at;
    field += trimmed(rest_.substr(from, at - from));
    more = at < rest_.size() && rest_[at] == delimiter_;
    if (more) ++at;
  }
  raw_ = rest_.substr(0, at);
  rest_.remove_prefix(std::min(at + 1, rest_.size()));
  nextLine_ += static_cast<std::size_t>(lines) + 1;
  return true;
}

bool TableRows::next() {
  while (!rest_.empty()) {
    const auto end = rest_.find('\n');
    const std::string_view line = rest_.substr(0, end);
    line_ = nextLine_;
    if (trimmed(line).empty()) {
      rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
      ++nextLine_;
      continue;
    }
    raw_ = line;
    const bool quotes = line.find('"') != line.npos, closed = quotes && cutQuoted();
    cut_ = quotes && !closed && end == line.npos;
    if (!closed) {
      rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
      ++nextLine_;
      cutPlain();
    }
    fields_.resize(count_);
    return true;
  }
  return false;
}

std::string_view TableRows::field(std::size_t place) const {
  return place < fields_.size() ? trimmed(fields_[place]) : std::string_view();
}

void remark(Taken& taken, std::string_view words) {
  if (!taken.remark.empty()) taken.remark += "; ";
  taken.remark += words;
}

std::size_t ColumnsByName::of(std::string_view heading) const {
  const auto there = std::ranges::find_if(
      names_, [&](std::string_view name) { return equalIgnoringCase(trimmed(name), heading); });
  return static_cast<std::size_t>(there - names_.begin());
}

void keepField(Entry& entry, std::string_view program, std::string_view field,
               std::string_view value) {
  entry.further.emplace_back(columnOfField(program, field), value);
}

std::string_view keptField(const Entry& entry, std::string_view program, std::string_view field) {
  for (const auto& [name, value] : entry.further) {
    if (name.size() == program.size() + 1 + field.size() && name.starts_with(program) &&
        name.ends_with(field))
      return value;
  }
  return {};
}

void takeMode(std::string_view word, std::span<const ModeWord> words, Taken& taken,
              std::string_view program) {
  word = trimmed(word);
  const auto mode = meaningOf(word, words);
  taken.entry.mode = mode.value_or(-1);
  if (!mode)
    remark(taken, "the mode \"" + std::string(word.substr(0, 40)) + "\" is unknown and left open");
  const bool usual = mode && equalIgnoringCase(word, wordOf(*mode, words));
  if (!program.empty() && !word.empty() && !usual)
    keepField(taken.entry, program, kModeField, lists::oneLine(word));
}

void takeWidth(std::string_view text, Taken& taken, Hz narrowest) {
  text = trimmed(text);
  if (text.find_first_not_of("0.,") == text.npos) return;
  Result<Hz> width = lists::readFrequency(text, lists::Unit::Hz);
  if (width && *width < narrowest) width = lists::readFrequency(text, lists::Unit::Khz);
  if (width && *width <= 10'000'000)
    taken.entry.width = *width;
  else
    remark(taken, "the bandwidth cannot be read");
}

bool isMark(std::string_view text) {
  return !text.empty() && text != "0" && !equalIgnoringCase(text, "no") &&
         !equalIgnoringCase(text, "false");
}

void Losses::count(std::string_view what) {
  const auto there = counts_.find(what);
  if (there == counts_.end())
    counts_.emplace(what, 1);
  else
    ++there->second;
}

void Losses::countParts(const Entry& entry, unsigned lacking) {
  const std::array<bool, kParts.size()> there = {
      entry.mode >= 0,     entry.width > 0, !entry.group.empty(),
      !entry.tags.empty(), entry.from >= 0, !entry.days.empty(),
      entry.favourite,     entry.skip,      !entry.note.empty(),
  };
  for (std::size_t part = 0; part < there.size(); ++part)
    parts_[part] += (lacking >> part & 1) && there[part];
}

bool Losses::none() const {
  return counts_.empty() && std::ranges::count(parts_, 0u) == std::ssize(parts_);
}

void Losses::countLines(const Entry& entry) {
  if (std::ranges::count(entry.note, '\n') >= kMostLinesOfField)
    count("line ends of its long note, and gets blanks");
}

void Losses::countFurther(const Entry& entry, std::string_view program) {
  const auto kept = [program](const auto& column) {
    return column.first.starts_with(program) &&
           column.first.substr(program.size()).starts_with(' ');
  };
  if (!std::ranges::all_of(entry.further, kept)) count("further columns");
}

std::vector<std::string> Losses::words() const {
  auto counts = counts_;
  for (std::size_t part = 0; part < parts_.size(); ++part) {
    if (parts_[part] > 0) counts.emplace(kParts[part], parts_[part]);
  }
  std::vector<std::string> all;
  for (const auto& [what, times] : counts)
    all.push_back(std::to_string(times) + (times == 1 ? " station loses " : " stations lose ") +
                  what + ".");
  return all;
}

std::string_view wordFor(const Entry& entry, std::span<const ModeWord> words, std::string_view none,
                         Losses& losses, std::string_view program) {
  const auto kept = keptField(entry, program, kModeField);
  if (!kept.empty() && meaningOf(kept, words).value_or(-1) == entry.mode) return kept;
  if (entry.mode < 0) return none;
  const auto find = [words](kelvane::Mode mode) -> std::string_view {
    for (const ModeWord& each : words) {
      if (each.mode == static_cast<Setting>(mode)) return each.word;
    }
    return {};
  };
  using enum kelvane::Mode;
  const auto mode = static_cast<kelvane::Mode>(entry.mode);
  if (const auto word = find(mode); !word.empty()) return word;
  losses.count("its mode " + std::string(modeName(entry.mode)) + ", and gets the nearest one");
  kelvane::Mode near = Usb;
  if (mode == Sam || mode == Sal || mode == Sah || mode == DataAm || mode == Dsb || mode == Drm)
    near = Am;
  if (mode == Fmn || mode == DataFm || mode == Wfm) near = Fm;
  if (mode == Cwr) near = Cw;
  if (mode == Rttyr) near = find(Rtty).empty() ? Lsb : Rtty;
  if (mode == DataLsb) near = Lsb;
  const auto word = find(near);
  return word.empty() ? none : word;
}

std::string_view UniqueNames::unique(std::string_view name) {
  const auto [met, isNew] = met_.try_emplace(name, 1);
  if (isNew) return name;
  int& number = met->second;
  for (;;) {
    const std::string numbered = std::string(name) + " (" + std::to_string(++number) + ")";
    if (met_.contains(numbered)) continue;
    met_.emplace(numbered_.emplace_back(numbered), 1);
    return numbered_.back();
  }
}

void appendGroupAndTags(std::string& text, const Entry& entry, Losses& losses) {
  if (entry.group == kUntagged) losses.count("its group, whose name means none there");
  const std::size_t begin = text.size();
  text += entry.group.empty() && !entry.tags.empty() ? kUntagged : std::string_view(entry.group);
  if (text.find(',', begin) != text.npos) {
    losses.count("a comma in its group, and gets a blank");
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), ',', ' ');
  }
  if (entry.tags.empty()) return;
  for (const std::string_view tag : split(entry.tags, ',')) {
    if (!trimmed(tag).empty()) (text += ',') += trimmed(tag);
  }
}

void takeGroupAndTags(std::string_view text, Entry& entry) {
  bool first = true;
  for (const std::string_view part : split(text, ',')) {
    const std::string tag = lists::oneLine(part);
    if (std::exchange(first, false)) {
      if (tag != kUntagged) entry.group = tag;
    } else if (!tag.empty()) {
      entry.tags += (entry.tags.empty() ? "" : ", ") + tag;
    }
  }
}

// A list has many texts, and hardly any has a sign that must be written otherwise: what lies
// between such signs is appended at once.

void appendJsonText(std::string& text, std::string_view value) {
  constexpr char kHex[] = "0123456789abcdef";
  text += '"';
  std::size_t from = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const char c = value[at];
    if (c != '"' && c != '\\' && static_cast<unsigned char>(c) >= ' ') continue;
    text.append(value, from, at - from);
    from = at + 1;
    if (c == '"' || c == '\\')
      (text += '\\') += c;
    else if (c == '\n')
      text += "\\n";
    else
      ((text += "\\u00") += kHex[c >> 4]) += kHex[c & 15];
  }
  text.append(value, from) += '"';
}

void appendXmlText(std::string& text, std::string_view value) {
  std::size_t from = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const char c = value[at];
    const bool control = static_cast<unsigned char>(c) < ' ' && c != '\n';
    if (c != '&' && c != '<' && c != '>' && !control) continue;
    text.append(value, from, at - from);
    from = at + 1;
    if (!control) text += c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&gt;";
  }
  text.append(value, from);
}

void appendTableField(std::string& text, std::string_view value, char delimiter) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  const auto asksForQuotes = [delimiter](char c) {
    return c == delimiter || (c <= '"' && (c == '"' || c == '\n' || c == '\r'));
  };
  if (value.empty()) return;
  if (blank(value.front()) || blank(value.back()) || std::ranges::any_of(value, asksForQuotes))
    appendQuoted(text, value);
  else
    text += value;
}

void appendQuoted(std::string& text, std::string_view value) {
  const bool manyLines =
      value.find('\n') != value.npos && std::ranges::count(value, '\n') >= kMostLinesOfField;
  text += '"';
  std::size_t from = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (value[at] != '"' && !(manyLines && value[at] == '\n')) continue;
    text.append(value, from, at - from) += value[at] == '"' ? "\"\"" : " ";
    from = at + 1;
  }
  text.append(value, from) += '"';
}

}  // namespace kelvane::formats
