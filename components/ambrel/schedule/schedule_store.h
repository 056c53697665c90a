#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "components/ambrel/data_files.h"
#include "components/ambrel/stations/station_list.h"
#include "components/ambrel/utc.h"

namespace kelvane::ambrel {

/// Reads a schedule that the user points at. Its season is told by the file's name, else by its
/// newest "last heard" mark, else by the file's own date. A list with a refusal is no schedule.
/// Waits for another program that holds the file.
StationList readScheduleFile(const std::filesystem::path& file, FileSteps& disk);

/// Keeps a schedule for the next starts, in the place of the one kept before. Answers why it could
/// not, in words; empty when it is kept.
Result<> keepSchedule(const StationList& schedule, const DataFiles& files);

/// The kept schedule; none when none was ever kept. A damaged one is put aside and comes back with
/// a refusal, one that cannot be read now with a refusal alone.
std::optional<StationList> keptSchedule(const DataFiles& files);

/// The HFCC season that is kept; none where there is none. A damaged one comes back with a refusal.
std::optional<StationList> keptHfcc(const DataFiles& files);

/// What became, in words, of a file that the operator gave and that is no schedule of EiBi's.
using OtherImport = Result<std::string>;
/// Takes in an HFCC season, or the text that tells the sites of EiBi's schedules; none where the
/// file is neither.
std::optional<OtherImport> importOther(const std::filesystem::path& file, const DataFiles& files);

/// Puts the kept schedule aside under another name, HFCC's with it, and answers that name; empty
/// when there is none or it could not be moved.
std::filesystem::path dropKeptSchedule(const DataFiles& files);

/// How old a schedule is at a moment: "A22, summer 2022: out of date since 30 Oct 2022".
std::string ageText(const Season& season, UtcMinute now);

}  // namespace kelvane::ambrel
