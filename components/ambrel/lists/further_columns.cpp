#include "components/ambrel/lists/further_columns.h"

#include <algorithm>

#include "base/in_parts.h"
#include "base/text_numbers.h"

namespace kelvane::lists {

std::vector<std::string_view> furtherHeadings(std::span<const EntryPtr> entries) {
  constexpr std::size_t kWorthAThread = 20'000;
  const auto look = [entries](TextNumbers& met, std::size_t i, std::size_t end) {
    for (; i < end; ++i) {
      for (const auto& [heading, value] : entries[i]->further) met.of(heading);
    }
  };
  std::vector<TextNumbers> parts = inParts<TextNumbers>(entries.size(), kWorthAThread, look);
  for (const TextNumbers& part : std::span(parts).subspan(1)) {
    for (const std::string_view heading : part.texts()) parts.front().of(heading);
  }
  return parts.front().texts();
}

std::string_view furtherField(const Entry& entry, std::string_view heading) {
  for (const auto& [name, value] : entry.further) {
    if (name == heading) return value;
  }
  return {};
}

}  // namespace kelvane::lists
