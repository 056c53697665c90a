#pragma once

#include <array>
#include <string>
#include <vector>

#include "levels/level_history.h"

namespace kelvane {

/// One of two receivers that are compared.
struct Compared {
  const LevelHistory& history;
  double offset = 0;        ///< dB added to its levels: what its cable or splitter takes away
  LevelTime unchanged = 0;  ///< since when its settings are what they are now
};

/// By how much one receiver hears more than another, over the seconds in which both had readings
/// and neither's settings changed.
struct Comparison {
  int seconds = 0;       ///< that were compared; with none of them nothing else means anything
  double now = 0;        ///< difference of the last of them, dB
  double mean = 0;       ///< of all, dB
  double deviation = 0;  ///< standard deviation, dB; 0 for a single second
  double ahead = 0;      ///< share of the seconds in which the first was ahead, 0 to 1
};

/// Compares the last `seconds` whole seconds before `now`.
Comparison compare(const Compared& first, const Compared& second, LevelTime now, int seconds);

/// The settings that decide what a level means. What a receiver does not tell is empty or below 0.
struct LevelSettings {
  Hz frequency = -1;
  std::string mode;
  Setting filter = 0;
  std::string agc;
  Long attenuation = -1;  ///< dB

  bool operator==(const LevelSettings&) const = default;
};

/// The settings that differ between two receivers, in words ("frequency, filter"); empty where a
/// difference of levels means something. What one of them does not have or tell does not differ.
std::string differingSettings(const LevelSettings& a, const LevelSettings& b);

/// The result as a line: "Harrow over Quill: +8.1 dB mean of 60 s, deviation 2.3, ahead 97 %".
std::string comparisonLine(const std::string& first, const std::string& second,
                           const Comparison& result);

/// A number of dB with its sign and one decimal place ("+8.1").
std::string signedDecibels(double decibels);

}  // namespace kelvane
