#include "base/program_line.h"

#include <algorithm>

#include "base/text.h"

namespace kelvane {

namespace {

constexpr std::string_view kEnding = ".EXE";
constexpr std::string_view kBlanks = " \t";

/// The line up to the first ".exe" that ends a word; empty where there is none.
std::string_view upToEnding(std::string_view line) {
  const std::string letters = upper(line);
  for (auto at = letters.find(kEnding); at != letters.npos; at = letters.find(kEnding, at + 1)) {
    const std::size_t end = at + kEnding.size();
    if (end == line.size() || kBlanks.find(line[end]) != kBlanks.npos) return line.substr(0, end);
  }
  return {};
}

/// Whether the words behind a path's first blank seem to belong to it: folders before any option.
bool goesOn(std::string_view rest) {
  const std::string_view words = rest.substr(0, std::min(rest.find(" -"), rest.find(" /")));
  const auto slash = words.find_first_of("\\/");
  return slash != words.npos && !(slash >= 1 && words[slash - 1] == ':');
}

}  // namespace

Result<std::string> programOf(std::string_view line) {
  line = trimmed(line);
  if (line.empty()) return Failure{"There is no program to start."};
  if (line.front() == '"') {
    const auto end = line.find('"', 1);
    if (end == line.npos) return Failure{"The quotes around the program's name are not closed."};
    return std::string(line.substr(1, end - 1));
  }
  const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
  const bool isPath = word.find_first_of("\\/") != word.npos;
  if (const auto whole = upToEnding(line); isPath && !whole.empty()) return std::string(whole);
  if (isPath && goesOn(line.substr(word.size())))
    return Failure{"Put the program's name in quotes, since it holds blanks."};
  return std::string(word);
}

}  // namespace kelvane
