#include "levels/comparison.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kelvane {

namespace {

std::string printed(const char* form, double number) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), form, number);
  return text.data();
}

}  // namespace

Comparison compare(const Compared& first, const Compared& second, LevelTime now, int seconds) {
  Comparison result;
  const LevelTime end = now / 1000;
  // The second in which a setting changed holds readings of both.
  const LevelTime unchanged = std::max(first.unchanged, second.unchanged) / 1000 + 1;
  double squares = 0;
  int ahead = 0;
  for (LevelTime at = std::max(end - seconds, unchanged); at < end; ++at) {
    const LevelSpan a = first.history.second(at), b = second.history.second(at);
    if (a.readings == 0 || b.readings == 0) continue;
    result.now = a.mean + first.offset - b.mean - second.offset;
    ++result.seconds;
    ahead += result.now > 0;
    const double before = result.now - result.mean;
    result.mean += before / result.seconds;
    squares += before * (result.now - result.mean);
  }
  if (result.seconds > 1) result.deviation = std::sqrt(squares / (result.seconds - 1));
  if (result.seconds > 0) result.ahead = static_cast<double>(ahead) / result.seconds;
  return result;
}

std::string differingSettings(const LevelSettings& a, const LevelSettings& b) {
  std::string words;
  const auto differ = [&words](const char* name, bool known, bool same) {
    if (known && !same) words += (words.empty() ? "" : ", ") + std::string(name);
  };
  differ("frequency", true, a.frequency == b.frequency);
  differ("mode", !a.mode.empty() && !b.mode.empty(), a.mode == b.mode);
  differ("filter", a.filter > 0 && b.filter > 0, a.filter == b.filter);
  differ("AGC", !a.agc.empty() && !b.agc.empty(), a.agc == b.agc);
  differ("attenuator", a.attenuation >= 0 && b.attenuation >= 0, a.attenuation == b.attenuation);
  return words;
}

std::string signedDecibels(double decibels) {
  const std::string text = printed("%+.1f", decibels);
  return text == "-0.0" ? "+0.0" : text;
}

std::string comparisonLine(const std::string& first, const std::string& second,
                           const Comparison& result) {
  if (result.seconds == 0) return first + " over " + second + ": no readings of both";
  return first + " over " + second + ": " + signedDecibels(result.mean) + " dB mean of " +
         std::to_string(result.seconds) + " s, now " + signedDecibels(result.now) + ", deviation " +
         printed("%.1f", result.deviation) + ", ahead " + printed("%.0f", result.ahead * 100) +
         " %";
}

}  // namespace kelvane
