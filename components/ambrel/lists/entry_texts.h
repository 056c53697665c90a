#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/text_writer.h"
#include "components/ambrel/lists/entry.h"

namespace kelvane::lists {

/// In what a frequency is written.
enum class Unit { Guess, Hz, Khz, Mhz };

/// Reads a frequency with "." or "," as decimal point, either of them between thousands, and
/// perhaps "Hz", "kHz" or "MHz" behind it, which wins over `unit`. What is finer than 1 Hz is
/// rounded. With Unit::Guess numbers from a million on are Hz, those with decimals below 100 and
/// all below 30 are MHz, and the others kHz. Fails for what is no frequency that can be kept.
Result<Hz> readFrequency(std::string_view text, Unit unit);

/// "9420", "518.5": kHz without needless decimals.
std::string khzText(Hz frequency);
void addKhz(TextWriter& text, Hz frequency);
/// "7.100000": MHz with six decimals, worked out in whole numbers.
void addMhz(TextWriter& text, Hz frequency);

/// Reads "HHMM", "HH:MM" or "'HHMM" as a minute of the day, 2400 being 1440; none where it is none.
std::optional<std::int16_t> readMinute(std::string_view text);
/// "0600"; 1440 is "2400".
void addMinute(TextWriter& text, std::int16_t minute);
/// Reads "0600-0800" into the entry; an empty text and "0000-2400" are the whole day. False where
/// it is anything else; the entry stays then.
bool readTimesOf(std::string_view text, Entry& entry);
/// "0600-0800"; empty for the whole day.
std::string timesText(const Entry& entry);
void addTimes(TextWriter& text, const Entry& entry);

/// The weekdays that a text names: bit 0 Monday to bit 6 Sunday. An empty text is all of them; none
/// where the text says more than weekdays.
std::optional<std::uint8_t> weekdaysOf(std::string_view days);
/// "Mo-Fr", "Mo,We"; empty for all seven and for none.
std::string weekdaysText(std::uint8_t weekdays);

/// The mode that a word of any of the usual programs means ("Narrow FM", "CW-L", "AMS", "FT8");
/// none where it is unknown, -1 where the word is empty.
std::optional<Setting> modeOfWord(std::string_view word);

/// The mode's name; empty where it is left open.
std::string modeText(Setting mode);
/// All of them, in the order of their numbers.
std::vector<std::string> modeTexts();

/// The text on one line, without blanks at either end: line ends and tabs become blanks.
std::string oneLine(std::string_view text);

}  // namespace kelvane::lists
