#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "components/ambrel/line_cutter.h"
#include "components/ambrel/record.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

enum class EibiColumn {
  Frequency,
  Times,
  Days,
  Country,
  Station,
  Language,
  Target,
  Site,
  Persistence,
  Start,
  Stop,
  Count
};

/// Whether a cut line has as many fields as the form asks for. One field too many is let pass, as
/// the lists themselves have such lines.
inline bool hasEibiFields(const LineCutter& line) {
  constexpr auto kColumns = static_cast<std::size_t>(EibiColumn::Count);
  return line.fields() == kColumns || line.fields() == kColumns + 1;
}

[[gnu::always_inline]] inline std::string_view field(const LineCutter& line, EibiColumn column) {
  return line.field(static_cast<std::size_t>(column));
}

/// Reads "HHMM-HHMM", 2400 being the day's end, into the record's start and length. A broadcast
/// that ends at its own start is heard in that minute; "0000-0000" is the whole day.
bool readTimes(std::string_view text, Record& record);

/// The mode that language and station speak of, and AM in the broadcast bands; none where they
/// leave it open.
std::optional<Mode> modeByWords(std::string_view language, std::string_view station, Hz frequency);

}  // namespace kelvane::ambrel
