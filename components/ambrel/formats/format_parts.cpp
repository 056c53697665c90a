#include "components/ambrel/formats/format_parts.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "contract/modes.h"

namespace kelvane::formats {

namespace {

std::string columnOfField(std::string_view program, std::string_view field) {
  return std::string(program).append(" ").append(field);
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

std::string_view keptFurther(const Entry& entry, std::string_view program, std::string_view field) {
  for (const auto& [name, value] : entry.further) {
    if (name.size() == program.size() + 1 + field.size() && name.starts_with(program) &&
        name.ends_with(field))
      return value;
  }
  return {};
}

std::optional<Setting> meaningOf(std::string_view word, std::span<const ModeWord> words) {
  for (const ModeWord& each : words) {
    if (equalIgnoringCase(each.word, word)) return each.mode;
  }
  return lists::modeOfWord(word);
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

}  // namespace kelvane::formats
