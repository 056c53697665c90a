#include "companions/channel_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "base/number.h"
#include "base/text.h"

namespace kelvane {

namespace {

using enum ChannelValue;

constexpr std::size_t kParts = 8;
/// What is beyond this in a line counts no more, but for its separators.
constexpr std::size_t kLongestLine = 1 << 16;

/// The parts of a line, without blanks around them; how many there are may be more than fit.
struct Parts {
  explicit Parts(std::string_view line) {
    for (;;) {
      const auto end = line.find(';');
      if (count < kParts) at[count] = trimmed(line.substr(0, end));
      ++count;
      if (end == std::string_view::npos) return;
      line.remove_prefix(end + 1);
    }
  }
  std::array<std::string_view, kParts> at;
  std::size_t count = 0;
};

/// Digits with a sign before and a point among them, and nothing else.
bool isNumeric(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  const auto point = std::ranges::count(text, '.');
  const auto digits = std::ranges::count_if(text, [](char c) { return isDigit(c); });
  return digits > 0 && point <= 1 && digits + point == static_cast<std::ptrdiff_t>(text.size());
}

/// Whole numbers are Hz; with a decimal point, people who write channel files by hand mean kHz, and
/// no receiver reaches this one in kHz.
bool looksLikeKilohertz(std::string_view frequency) {
  constexpr double kNoKilohertz = 1e6;
  return frequency.find('.') != std::string_view::npos && num(frequency) < kNoKilohertz;
}

Long longOf(std::string_view text) { return nearestLong(num(text)); }

/// Right-aligned in a width of characters; a longer text is never cut.
void addField(std::string& line, std::string_view text, std::size_t width, char fill = ' ') {
  const std::size_t length = characterCount(text);
  if (length < width) line.append(width - length, fill);
  line += text;
  line += ';';
}

void addNumber(std::string& line, Long value, std::size_t width, char fill = ' ') {
  std::array<char, 16> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  addField(line, {digits.data(), end}, width, fill);
}

}  // namespace

Result<ChannelLine> readChannelLine(std::string_view line, std::int64_t number,
                                    NamesNeeded needed) {
  const std::string n = std::to_string(number);
  if (line.empty()) return Failure{"Line " + n + " is invalid"};
  const Parts parts(line);
  if (parts.count != kParts)
    return Failure{"Line " + n + " don't contain the required number of fields !"};
  const auto& at = parts.at;
  const bool incomplete = at[0].empty() || at[1].empty() || at[4].empty() ||
                          (needed.mode && at[3].empty()) || (needed.agc && at[5].empty());
  if (incomplete) return Failure{"Empty field(s) on line " + n};
  const bool numeric = isNumeric(at[0]) && isNumeric(at[1]) && isNumeric(at[4]) &&
                       (at[2].empty() || isNumeric(at[2]));
  if (!numeric) return Failure{"Non numerical field(s) on line " + n};
  // A decimal point can hardly be meant in Hz.
  if (looksLikeKilohertz(at[1]))
    return Failure{"The frequency on line " + n + " looks like kHz; it must be in Hz"};
  return ChannelLine{num(at[0]),    longOf(at[1]), longOf(at[2]), longOf(at[4]),
                     longOf(at[6]), at[3],         at[5]};
}

void addChannelLine(std::string& text, Channel channel, const ChannelRow& row,
                    std::string_view modeName, std::string_view agcName) {
  addNumber(text, channel, 3, '0');
  addNumber(text, row.sent(Frequency), 11);
  addNumber(text, row.sent(Bfo), 5);
  addField(text, modeName, 5);
  addNumber(text, row.sent(Filter), 5);
  addField(text, agcName, 4);
  addNumber(text, row.sent(Skip), 1);
  text += "\r\n";
}

bool LineCutter::feed(std::string_view bytes) {
  while (open_ && !bytes.empty()) {
    if (std::exchange(afterReturn_, false) && bytes.front() == '\n') {
      bytes.remove_prefix(1);
      continue;
    }
    const auto at = std::ranges::find_if(bytes, [](char c) { return c == '\r' || c == '\n'; });
    const auto end = static_cast<std::size_t>(at - bytes.begin());
    if (end == bytes.size()) {
      keep(bytes);
      break;
    }
    afterReturn_ = bytes[end] == '\r';
    open_ = tell(bytes.substr(0, end));
    bytes.remove_prefix(end + 1);
  }
  return open_;
}

void LineCutter::end() {
  if (open_ && !kept_.empty()) tell({});
  open_ = false;
}

bool LineCutter::tell(std::string_view rest) {
  if (kept_.empty()) return line_(rest);
  keep(rest);
  const bool more = line_(kept_);
  kept_.clear();
  return more;
}

void LineCutter::keep(std::string_view part) {
  const std::size_t room = kLongestLine - std::min(kLongestLine, kept_.size());
  kept_ += part.substr(0, room);
  // Only the number of fields still counts, and a few too many are as wrong as a million.
  const auto more = part.size() > room ? std::ranges::count(part.substr(room), ';') : 0;
  if (kept_.size() < kLongestLine + kParts)
    kept_.append(std::min<std::size_t>(static_cast<std::size_t>(more), kParts), ';');
}

}  // namespace kelvane
