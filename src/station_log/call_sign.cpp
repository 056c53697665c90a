#include "station_log/call_sign.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace kelvane {

namespace {

bool areCapitals(std::string_view text) { return std::ranges::all_of(text, isCapital); }

/// One to three letters and digits, a digit, one to four letters.
bool isAmateurCall(std::string_view word) {
  const std::size_t last = word.find_last_of("0123456789");
  if (last == std::string_view::npos || last < 1 || last > 3 || word.size() < last + 2 ||
      word.size() > last + 5)
    return false;
  const std::string_view prefix = word.substr(0, last), suffix = word.substr(last + 1);
  return areCapitals(suffix) && std::ranges::any_of(prefix, isCapital) &&
         std::ranges::all_of(prefix, [](char c) { return isCapital(c) || isDigit(c); });
}

/// Three letters and a number of up to three digits: coast, weather and time stations.
bool isStationCall(std::string_view word) {
  constexpr std::size_t kLetters = 3;
  if (word.size() <= kLetters || word.size() > kLetters + 3) return false;
  const std::string_view number = word.substr(kLetters);
  // A digital mode, not a station.
  return areCapitals(word.substr(0, kLetters)) && std::ranges::all_of(number, isDigit) &&
         number.front() != '0' && !word.starts_with("PSK");
}

/// Letters alone are mostly words; these are the call signs among them that listeners meet, beside
/// those of the USA, which begin with K or W.
constexpr auto kLetterCalls = std::to_array<std::string_view>(
    {"BPC", "BPM", "CBM", "CBV", "CFH", "CFRX", "CHU", "CKZN", "DDH", "DDK",  "GYA",
     "HLA", "JJC", "JJY", "JMH", "LOL", "MSF",  "NMC", "NMF",  "NMG", "NOJ",  "PPE",
     "RBU", "RBW", "RWM", "UVB", "VCO", "VFA",  "VFF", "VMC",  "VMW", "ZKLF", "ZSJ"});

bool isLetterCall(std::string_view word) {
  if (std::ranges::find(kLetterCalls, word) != kLetterCalls.end()) return true;
  return (word.size() == 3 || word.size() == 4) && areCapitals(word) && word != "WSPR" &&
         (word.front() == 'K' || word.front() == 'W');
}

template <class Form>
std::string_view firstWord(std::string_view text, Form form) {
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(" /");
    std::string_view word = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    while (!word.empty() && std::string_view(".,:;").find(word.back()) != std::string_view::npos)
      word.remove_suffix(1);
    if (form(word)) return word;
  }
  return {};
}

bool isCall(std::string_view word) { return isAmateurCall(word) || isStationCall(word); }

}  // namespace

std::string_view callInComment(std::string_view comment) {
  // Most comments need no second look.
  if (std::ranges::none_of(comment, isDigit)) return {};
  return firstWord(comment, isCall);
}

std::string_view callInName(std::string_view name) {
  return firstWord(name, [](std::string_view word) { return isCall(word) || isLetterCall(word); });
}

}  // namespace kelvane
