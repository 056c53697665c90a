#include "components/ambrel/lists/entry_texts.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/number.h"
#include "base/text.h"
#include "contract/modes.h"

namespace kelvane::lists {

namespace {

constexpr std::string_view kDayNames = "MoTuWeThFrSaSu";

/// A number's digits with the place of its decimal point.
struct Decimal {
  std::string digits;  ///< without the point
  std::size_t decimals = 0;
};

/// Which of the signs in a number is its decimal point; npos for none. Where both occur it is the
/// last one; one that occurs several times parts thousands.
std::size_t pointIn(std::string_view number, Unit unit) {
  const auto last = number.find_last_of(".,");
  if (last == number.npos) return last;
  const char sign = number[last];
  const bool several = number.find(sign) != last;
  const bool both = number.find(sign == '.' ? ',' : '.') != number.npos;
  if (several) return number.npos;
  // "7,100" is 7.1 MHz or kHz, but 7100 Hz: nobody writes thousandths of a hertz.
  const bool thousands = number.size() - last == 4 && unit == Unit::Hz;
  return thousands && !both ? number.npos : last;
}

std::optional<Decimal> readDecimal(std::string_view number, Unit unit) {
  Decimal read;
  const auto point = pointIn(number, unit);
  for (std::size_t i = 0; i < number.size(); ++i) {
    const char c = number[i];
    if (isDigit(c)) {
      read.digits += c;
      if (point != number.npos && i > point) ++read.decimals;
    } else if (c != '.' && c != ',' && c != '\'' && c != ' ') {
      return std::nullopt;
    }
  }
  if (read.digits.empty() || read.digits.size() > 24) return std::nullopt;
  return read;
}

/// Takes a unit off the text's end.
Unit takeUnit(std::string_view& text) {
  struct Suffix {
    std::string_view word;
    Unit unit;
  };
  constexpr std::array<Suffix, 5> kSuffixes = {{{"MHZ", Unit::Mhz},
                                                {"KHZ", Unit::Khz},
                                                {"HZ", Unit::Hz},
                                                {"M", Unit::Mhz},
                                                {"K", Unit::Khz}}};
  if (text.empty() || isDigit(text.back())) return Unit::Guess;
  const std::string large = upper(text.substr(text.size() - std::min<std::size_t>(3, text.size())));
  for (const Suffix& each : kSuffixes) {
    if (!large.ends_with(each.word)) continue;
    text = trimmed(text.substr(0, text.size() - each.word.size()));
    return each.unit;
  }
  return Unit::Guess;
}

Unit guessed(const Decimal& number) {
  const std::size_t whole = number.digits.size() - std::min(number.decimals, number.digits.size());
  const double value = num(number.digits.substr(0, whole));
  if (value >= 1'000'000) return Unit::Hz;
  return value < 30 || (value < 100 && number.decimals > 0) ? Unit::Mhz : Unit::Khz;
}

std::int64_t tens(std::size_t power) {
  std::int64_t value = 1;
  while (power-- > 0) value *= 10;
  return value;
}

/// A number of Hz that is nothing but digits; none where there is more to be read.
std::optional<Hz> wholeHertz(std::string_view number, Unit unit) {
  constexpr std::size_t kMostDigits = 9;
  if (unit != Unit::Hz || number.empty() || number.size() > kMostDigits) return std::nullopt;
  Hz hertz = 0;
  for (const char c : number) {
    if (!isDigit(c)) return std::nullopt;
    hertz = hertz * 10 + (c - '0');
  }
  return hertz > 0 ? std::optional(hertz) : std::nullopt;
}

/// Puts a number's digits from that of a power of ten on; answers where they end.
char* putDigits(char* to, int number, int power) {
  for (; power > 0; power /= 10) *to++ = static_cast<char>('0' + number / power % 10);
  return to;
}

constexpr std::size_t kLongestKhz = 12;

char* putKhz(char* to, Hz frequency) {
  to = std::to_chars(to, to + kLongestKhz, frequency / 1000).ptr;
  Hz rest = frequency % 1000;
  if (rest == 0) return to;
  *to++ = '.';
  for (Hz power = 100; rest > 0; power /= 10) {
    *to++ = static_cast<char>('0' + rest / power);
    rest %= power;
  }
  return to;
}

int weekdayNamed(std::string_view two) {
  if (two.size() < 2) return -1;
  const std::string name{static_cast<char>(two[0] & ~0x20), static_cast<char>(two[1] | 0x20)};
  for (std::size_t day = 0; day < 7; ++day) {
    if (kDayNames.substr(day * 2, 2) == name) return static_cast<int>(day);
  }
  return -1;
}

std::string dayName(int day) {
  return std::string(kDayNames.substr(static_cast<std::size_t>(day) * 2, 2));
}

}  // namespace

Result<Hz> readFrequency(std::string_view text, Unit unit) {
  std::string_view number = trimmed(text);
  // Most programs write whole Hz.
  if (const auto hertz = wholeHertz(number, unit)) return *hertz;
  const Unit written = takeUnit(number);
  if (written != Unit::Guess) unit = written;
  const auto read = readDecimal(number, unit);
  if (!read)
    return Failure{text.empty() ? "there is no frequency" : "the frequency cannot be read"};
  if (unit == Unit::Guess) unit = guessed(*read);
  const std::size_t power = unit == Unit::Mhz ? 6 : unit == Unit::Khz ? 3 : 0;
  // One digit more than counts, for rounding.
  std::string digits = read->digits;
  std::size_t decimals = read->decimals;
  if (decimals > power + 1) {
    digits.resize(digits.size() - (decimals - power - 1));
    decimals = power + 1;
  }
  const auto value = wholeNumber(digits);
  if (!value || *value > std::int64_t{kHighestHz} * 10)
    return Failure{"the frequency is above the most, 2147 MHz"};
  std::int64_t hertz = *value;
  if (decimals <= power)
    hertz = hertz > kHighestHz / tens(power - decimals) ? std::int64_t{kHighestHz} + 1
                                                        : hertz * tens(power - decimals);
  else
    hertz = (hertz + 5) / 10;
  if (hertz > kHighestHz) return Failure{"the frequency is above the most, 2147 MHz"};
  if (hertz <= 0) return Failure{"the frequency is 0"};
  return static_cast<Hz>(hertz);
}

void addKhz(TextWriter& text, Hz frequency) {
  text.wrote(putKhz(text.room(kLongestKhz), frequency));
}

std::string khzText(Hz frequency) {
  std::array<char, kLongestKhz> text;
  return {text.data(), putKhz(text.data(), frequency)};
}

void addMhz(TextWriter& text, Hz frequency) {
  constexpr Hz kMega = 1'000'000;
  text.addNumber(frequency / kMega).add('.');
  constexpr std::size_t kDecimals = 6;
  text.wrote(putDigits(text.room(kDecimals), frequency % kMega, kMega / 10));
}

std::optional<std::int16_t> readMinute(std::string_view text) {
  text = trimmed(text);
  std::string digits;
  for (const char c : text) {
    if (isDigit(c))
      digits += c;
    else if (c != ':' && c != '\'')
      return std::nullopt;
  }
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  const auto value = static_cast<int>(*wholeNumber(digits));
  const int minute = value / 100 * 60 + value % 100;
  if (value % 100 > 59 || minute > 1440) return std::nullopt;
  return static_cast<std::int16_t>(minute);
}

bool readTimesOf(std::string_view text, Entry& entry) {
  text = trimmed(text);
  if (text.empty()) {
    entry.from = entry.to = -1;
    return true;
  }
  const auto dash = text.find('-');
  if (dash == text.npos) return false;
  const auto from = readMinute(text.substr(0, dash)), to = readMinute(text.substr(dash + 1));
  if (!from || !to || *from == 1440) return false;
  const bool wholeDay = *from == 0 && (*to == 1440 || *to == 0);
  entry.from = wholeDay ? std::int16_t{-1} : *from;
  entry.to = wholeDay ? std::int16_t{-1} : *to;
  return true;
}

void addMinute(TextWriter& text, std::int16_t minute) {
  constexpr std::size_t kDigits = 4;
  text.wrote(putDigits(text.room(kDigits), minute / 60 * 100 + minute % 60, 1000));
}

void addTimes(TextWriter& text, const Entry& entry) {
  if (entry.from < 0) return;
  addMinute(text, entry.from);
  addMinute(text.add('-'), entry.to);
}

std::string timesText(const Entry& entry) {
  TextWriter text;
  addTimes(text, entry);
  return text.take();
}

std::optional<std::uint8_t> weekdaysOf(std::string_view days) {
  std::uint8_t mask = 0;
  int open = -1;  // a range has begun with this day
  for (std::size_t i = 0; i < days.size();) {
    if (days[i] == ',' || days[i] == ' ') {
      ++i;
      continue;
    }
    if (days[i] == '-' && mask != 0 && open >= 0) {
      const int last = weekdayNamed(days.substr(i + 1));
      if (last < 0) return std::nullopt;
      for (int day = open; day != last; day = (day + 1) % 7)
        mask |= static_cast<std::uint8_t>(1 << day);
      mask |= static_cast<std::uint8_t>(1 << last);
      open = -1;
      i += 3;
      continue;
    }
    const bool number = days[i] >= '1' && days[i] <= '7';
    open = number ? days[i] - '1' : weekdayNamed(days.substr(i));
    if (open < 0) return std::nullopt;
    mask |= static_cast<std::uint8_t>(1 << open);
    i += number ? 1 : 2;
  }
  return mask == 0 ? 0x7F : mask;
}

std::string weekdaysText(std::uint8_t weekdays) {
  weekdays &= 0x7F;
  if (weekdays == 0 || weekdays == 0x7F) return {};
  std::string text;
  for (int day = 0; day < 7; ++day) {
    if (!(weekdays >> day & 1)) continue;
    int last = day;
    while (last < 6 && (weekdays >> (last + 1) & 1)) ++last;
    text += (text.empty() ? "" : ",") + dayName(day);
    if (last > day) text += (last > day + 1 ? "-" : ",") + dayName(last);
    day = last;
  }
  return text;
}

std::optional<Setting> modeOfWord(std::string_view word) {
  struct Word {
    std::string_view word;
    Mode mode;
  };
  constexpr auto kWords = std::to_array<Word>({
      {"AM-SYNC", Mode::Sam},    {"AMS", Mode::Sam},         {"AMSYNC", Mode::Sam},
      {"AMN", Mode::Am},         {"NAM", Mode::Am},          {"NARROWFM", Mode::Fm},
      {"NFM", Mode::Fm},         {"NBFM", Mode::Fm},         {"FM-N", Mode::Fmn},
      {"FMN", Mode::Fmn},        {"WBFM", Mode::Wfm},        {"BFM", Mode::Wfm},
      {"WFM(MONO)", Mode::Wfm},  {"WFM(STEREO)", Mode::Wfm}, {"WFM(OIRT)", Mode::Wfm},
      {"CW-U", Mode::Cw},        {"CWU", Mode::Cw},          {"CWN", Mode::Cw},
      {"NCW", Mode::Cw},         {"CW-L", Mode::Cwr},        {"CWL", Mode::Cwr},
      {"CW-R", Mode::Cwr},       {"NCWR", Mode::Cwr},        {"RTTY-R", Mode::Rttyr},
      {"FSK", Mode::Rtty},       {"FSKR", Mode::Rttyr},      {"USN", Mode::Usb},
      {"LSN", Mode::Lsb},        {"SAL", Mode::Sal},         {"SAU", Mode::Sah},
      {"DIG", Mode::DataUsb},    {"DIGU", Mode::DataUsb},    {"DATA-U", Mode::DataUsb},
      {"DIGL", Mode::DataLsb},   {"DATA-L", Mode::DataLsb},  {"PKT", Mode::DataFm},
      {"DATA-FM", Mode::DataFm}, {"FT8", Mode::Usb},         {"FT4", Mode::Usb},
      {"WSPR", Mode::Usb},       {"JT65", Mode::Usb},        {"JT9", Mode::Usb},
      {"PSK31", Mode::Usb},      {"PSK", Mode::Usb},         {"HFDL", Mode::Usb},
      {"ALE", Mode::Usb},        {"MORSE", Mode::Cw},        {"WEFAX", Mode::Fax},
  });
  if (trimmed(word).empty()) return -1;
  std::string plain = upper(trimmed(word));
  std::erase(plain, ' ');
  for (const Word& each : kWords) {
    if (each.word == plain) return static_cast<Setting>(each.mode);
  }
  if (const auto mode = modeNamed(plain)) return static_cast<Setting>(*mode);
  return std::nullopt;
}

std::string modeText(Setting mode) { return std::string(modeName(mode)); }

std::vector<std::string> modeTexts() { return {kModeNames.begin(), kModeNames.end()}; }

std::string oneLine(std::string_view text) {
  std::string line(trimmed(text));
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return line;
}

}  // namespace kelvane::lists
