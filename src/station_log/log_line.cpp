#include "station_log/log_line.h"

#include <array>

#include "base/text.h"

namespace kelvane {

namespace {

constexpr char kSeparator = '|';

struct Padding {
  std::size_t width;
  bool left;
};
/// Of the fields from the first on; those behind are not padded.
constexpr std::array<Padding, 4> kPadding{{{10, true}, {5, false}, {6, true}, {5, false}}};

Padding paddingOf(int field) {
  const auto place = static_cast<std::size_t>(field);
  return place < kPadding.size() ? kPadding[place] : Padding{0, false};
}

/// Takes the part before the next separator off the line; the whole line where there is none.
std::string_view takeField(std::string_view& line) {
  const std::size_t end = line.find(kSeparator);
  const std::string_view part = line.substr(0, end);
  line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
  return trimmed(part);
}

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool isPadded(std::string_view part, Padding padding) {
  if (part.size() < padding.width) return false;
  if (part.size() == padding.width) {
    while (padding.left && part.starts_with(' ')) part.remove_prefix(1);
    while (!padding.left && part.ends_with(' ')) part.remove_suffix(1);
  }
  return part.empty() || (!isBlank(part.front()) && !isBlank(part.back()));
}

/// Whether a line is what appendLogLine() makes of it.
bool isInForm(const LogLines& line) {
  if (line.fields() != kLogFields + 1 || !line.field(kLogFields).empty()) return false;
  for (int field = 0; field < kLogFields; ++field) {
    if (!isPadded(line.field(static_cast<std::size_t>(field)), paddingOf(field))) return false;
  }
  return true;
}

void appendField(std::string& line, std::string_view text, Padding padding) {
  const std::size_t blanks = padding.width > text.size() ? padding.width - text.size() : 0;
  if (padding.left) line.append(blanks, ' ');
  line += text;
  if (!padding.left) line.append(blanks, ' ');
  line += kSeparator;
}

}  // namespace

std::array<std::string_view, kLogFields> logFields(std::string_view line) {
  std::array<std::string_view, kLogFields> fields;
  for (std::string_view& field : fields) field = takeField(line);
  return fields;
}

std::string_view logField(std::string_view line, int field) {
  for (; field > 0; --field) {
    const std::size_t end = line.find(kSeparator);
    if (end == std::string_view::npos) return {};
    line.remove_prefix(end + 1);
  }
  return takeField(line);
}

bool isPositive(std::string_view text) {
  bool point = false;
  for (const char c : text.substr(!text.empty() && text.front() == '+' ? 1 : 0)) {
    if (c >= '1' && c <= '9') return true;
    if (c != '0' && (c != '.' || point)) return false;
    point = point || c == '.';
  }
  return false;
}

LogLine judgeLogLine(const LogLines& line) {
  const std::string_view frequency = trimmed(line.field(LogFrequency));
  const std::string_view filter = trimmed(line.field(LogFilter));
  if (!isPositive(frequency) || (!filter.empty() && !isPositive(filter))) return LogLine::NoRecord;
  if (isInForm(line)) return LogLine::InForm;
  // Eight separators part nine fields; writers put one behind the ninth as well.
  if (line.fields() < kLogFields) return LogLine::NoRecord;
  const bool nineOnly = line.fields() <= kLogFields + 1 && trimmed(line.field(kLogFields)).empty();
  return nineOnly ? LogLine::Record : LogLine::TooLong;
}

LogLine judgeLogLine(std::string_view line) {
  LogLines one(line);
  return one.next() ? judgeLogLine(one) : LogLine::NoRecord;
}

std::string logText(std::string_view text) {
  std::string result(trimmed(text));
  for (char& c : result) {
    if (c == kSeparator) c = '/';
    if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) c = ' ';
  }
  return std::string(trimmed(result));
}

void appendLogLine(std::string& file, std::string_view line) {
  for (int field = 0; field < kLogFields; ++field)
    appendField(file, takeField(line), paddingOf(field));
  file += kLogLineEnd;
}

std::string joinLogLine(const LogRecord& record) {
  std::string line;
  for (int field = 0; field < kLogFields; ++field)
    appendField(line, logText(record[static_cast<std::size_t>(field)]), paddingOf(field));
  return line;
}

}  // namespace kelvane
