#include "base/unchanging_file.h"

#include <chrono>
#include <cstdint>
#include <system_error>
#include <utility>

namespace kelvane {

namespace {

/// Size and time of a file, by which one state of it is told from another.
using FileState = std::pair<std::uintmax_t, std::filesystem::file_time_type>;

FileState stateOf(const std::filesystem::path& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  return {size, std::filesystem::last_write_time(file, error)};
}

/// Whoever writes piece by piece rests between two of them. A file that nobody has touched for a
/// while is not waited for; a clock that goes wrong costs one rest.
bool maybeUnfinished(const FileState& state) {
  const auto now = std::filesystem::file_time_type::clock::now();
  return state.second > now - std::chrono::seconds(10);
}

}  // namespace

FileReading readUnchanging(const std::filesystem::path& file, std::size_t limit, FileSteps& disk) {
  constexpr int kTries = 10;
  constexpr milliseconds kRest{100};
  for (int tried = 0; tried < kTries; ++tried) {
    const auto before = stateOf(file);
    FileReading reading = readWhenFree(file, limit, disk);
    if (reading.how != FileReading::Whole) return reading;
    if (maybeUnfinished(before)) disk.pause(kRest);
    if (stateOf(file) == before) return reading;
  }
  return {FileReading::Unreadable,
          {},
          "Another program is writing it; try again when it is done.",
          true};
}

}  // namespace kelvane
