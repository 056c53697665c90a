#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "components/ambrel/bands/band_plan.h"
#include "components/ambrel/data_files.h"
#include "contract/types.h"

namespace kelvane::ambrel {

inline constexpr Long kRegions = 3;

/// Name of the file of a region's band plan; the region counts from 0.
std::string planFileName(Long region);

/// A file that was read for a region's band plan.
struct PlanFile {
  Long region = 0;  ///< from 0
  std::filesystem::path file;
  bool usersOwn = false;
  bool used = false;
  std::size_t entries = 0;
  std::vector<std::string> problems;  ///< why it is not used, in words
};

/// The band plans of the regions, and where in them the database is positioned.
class Bands {
 public:
  /// Reads each region's plan from the best file that can be read; what there is to say of others
  /// is added to `notes`. A region without any readable file has the coarse built-in plan.
  Bands(const DataFiles& files, FileNotes& notes);

  /// The files that were read, those not used included.
  const std::vector<PlanFile>& files() const { return files_; }

  /// Region from 0.
  Long region() const { return region_; }
  void selectRegion(Long region);

  /// Moves to a frequency; answers whether another entry holds it now.
  bool moveTo(Hz frequency);
  Hz frequency() const { return frequency_; }
  const BandEntry& here() const { return plan()[place_]; }
  const BandPlan& plan() const { return plans_[static_cast<std::size_t>(region_)]; }

  /// A frequency in the next or previous entry: the next one's start, the previous one's last Hz
  /// (so that limiting it to a receiver's range leaves the entry only where the receiver ends).
  /// At either end the present frequency. Moves nothing.
  Hz neighbour(Long direction) const;

 private:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  BandPlan load(const DataFiles& files, Long region, FileNotes& notes);

  std::vector<PlanFile> files_;
  std::vector<BandPlan> plans_;
  Long region_ = 0;
  Hz frequency_ = 0;
  std::size_t place_ = 0;
  std::size_t reported_ = kNowhere;  ///< the entry of the last answer of moveTo
};

}  // namespace kelvane::ambrel
