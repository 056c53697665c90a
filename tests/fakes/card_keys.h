#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companions/help_card.h"
#include "tests/fakes/rtf_text.h"

namespace kelvane::fakes {

/// One key of the card: where it is pressed, the key, what the card says that it does.
struct CardKey {
  std::string section, from, keys, action;
};

inline std::vector<std::string> splitAt(const std::string& text, std::string_view mark) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (auto end = text.find(mark); end != std::string::npos; end = text.find(mark, start)) {
    parts.push_back(text.substr(start, end - start));
    start = end + mark.size();
  }
  parts.push_back(text.substr(start));
  return parts;
}

/// Every key of the card; "L / U" counts as two.
inline std::vector<CardKey> cardKeys() {
  std::vector<CardKey> keys;
  std::string section, from;
  for (const auto& line : splitAt(RtfText::of(helpCard("Any", Arrows::Symbol)), "\n")) {
    const auto cells = splitAt(line, "\t");
    if (line.starts_with("From ") || line.starts_with("On a ")) {
      // The log's own keys stand on the card as if they were the main window's.
      const bool again = section == "LOGFILE SETTING" && from == line;
      from = again ? "From log window" : line;
    } else if (cells.size() == 1) {
      if (!line.starts_with("_")) {
        section = line;
        from.clear();
      }
      continue;
    }
    for (std::size_t i = 0; i + 1 < cells.size(); i += 2) {
      if (cells[i].empty() || cells[i + 1].empty()) continue;
      for (const auto& key : splitAt(cells[i], " / "))
        keys.push_back({section, from, key, cells[i + 1]});
    }
  }
  return keys;
}

}  // namespace kelvane::fakes
