#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/rigctld/rigctld_types.h"

namespace kelvane::sondrel {

/// The manners of speaking that servers were found to have.
enum class Dialect {
  Extended,  ///< rigctld itself: labelled replies that end in a report
  Static,    ///< an SDR program that answers a fixed description; bare values
  Minimal,   ///< an SDR program that knows frequency and mode and little else; bare values
};

/// The dialect in words, for the operator.
std::string_view dialectName(Dialect dialect);

struct FrequencyRange {
  double low = 0;   ///< Hz
  double high = 0;  ///< Hz
};

/// A width (Hz) or tuning step (Hz) for the modes whose bits are set; 0 stands for any.
struct ModeRow {
  std::uint64_t modes = 0;
  std::int32_t hertz = 0;
};

/// An AGC setting: its name, and the code by which it is set and read.
struct AgcLevel {
  std::string name;
  std::int32_t code = 0;

  bool operator==(const AgcLevel&) const = default;
};

/// What a radio behind a server is and can do. Everything that is sent to a server is limited by
/// this first: servers check nothing.
struct RigctldCapabilities {
  Dialect dialect = Dialect::Minimal;
  bool vfoArgument = false;  ///< the server wants a VFO's name in each command
  std::int32_t modelNumber = 0;
  std::string model;    ///< maker and model, empty where the server does not tell
  std::string version;  ///< the server's own version, empty where it does not tell
  std::vector<FrequencyRange> ranges;
  std::vector<ModeRow> steps;
  std::vector<ModeRow> filters;
  std::vector<std::string> modes;         ///< the radio's own names, in its order
  std::vector<std::int32_t> attenuators;  ///< dB, rising, without 0
  std::vector<std::int32_t> preamps;      ///< dB, rising, without 0
  std::vector<AgcLevel> agcLevels;
  std::int32_t mostShift = 0;  ///< Hz either way
  RigItems readable;           ///< items that the radio answered, or may still answer
  RigItems settable;

  /// The allowed frequency nearest to this one, Hz.
  std::int32_t nearestFrequency(std::int32_t hertz) const;
  std::int32_t lowestFrequency() const;
  std::int32_t highestFrequency() const;
  /// Bandwidths of the mode, Hz, rising; never 0.
  std::vector<std::int32_t> widths(std::string_view mode) const;
  /// The width that comes with the mode, Hz.
  std::int32_t usualWidth(std::string_view mode) const;
  /// The width of the mode nearest to this one.
  std::int32_t nearestWidth(std::string_view mode, std::int32_t width) const;
  bool hasMode(std::string_view mode) const;
  /// The finest and the coarsest tuning step, Hz; 0 where the server does not tell.
  std::int32_t finestStep() const;
  std::int32_t coarsestStep() const;
};

/// Whether a word can be the name of a mode; nothing else is ever sent as one.
bool isModeName(std::string_view text);

/// The bit of a mode in the protocol's masks; 0 for a mode that has none.
std::uint64_t modeBit(std::string_view mode);

/// The protocol's code of an AGC setting's name; none for a name that it does not have.
std::optional<std::int32_t> agcCode(std::string_view name);

/// The member of a list that is nearest to a value; the value itself for an empty list.
std::int32_t nearestOf(const std::vector<std::int32_t>& list, std::int32_t value);

}  // namespace kelvane::sondrel
