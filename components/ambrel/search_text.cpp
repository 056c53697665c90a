#include "components/ambrel/search_text.h"

#include <algorithm>
#include <cstdint>

#include "base/text.h"

namespace kelvane::ambrel {

namespace {

/// Base letters of U+00C0 to U+00FF; a blank where a sign has none.
constexpr std::string_view kBase =
    "aaaaaaaceeeeiiii"
    "dnooooo ouuuuy s"
    "aaaaaaaceeeeiiii"
    "dnooooo ouuuuy y";
static_assert(kBase.size() == 64);

}  // namespace

std::string searchForm(std::string_view utf8) {
  std::string form;
  form.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const char c = utf8[i];
    const bool latin = c == '\xC3' && i + 1 < utf8.size();
    const char base = latin ? kBase[static_cast<std::uint8_t>(utf8[i + 1]) & 0x3F] : ' ';
    if (base != ' ') {
      form += base;
      ++i;
    } else {
      form += static_cast<char>(lowerLetter(c));
    }
  }
  return form;
}

std::vector<std::string> searchWords(std::string_view typed) {
  std::vector<std::string> words;
  for (const std::string_view word : split(typed, ' ')) {
    if (!trimmed(word).empty()) words.push_back(searchForm(trimmed(word)));
  }
  return words;
}

bool hasAllWords(std::string_view text, const std::vector<std::string>& words) {
  return std::all_of(words.begin(), words.end(), [text](const std::string& word) {
    return text.find(word) != std::string_view::npos;
  });
}

}  // namespace kelvane::ambrel
