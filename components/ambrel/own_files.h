#pragma once

#include <filesystem>

#include "base/result.h"
#include "components/ambrel/data_files.h"
#include "contract/types.h"

namespace kelvane::ambrel {

/// A file of the operator's own, there to be edited; else why it could not be made.
using OwnFile = Result<std::filesystem::path>;

/// The operator's own file of known frequencies; where there is none yet, one that tells how it is
/// written.
OwnFile ownKnownFile(const DataFiles& files);

/// The operator's own band plan of a region (from 0); where there is none yet, a copy of the one
/// that is used.
OwnFile ownPlanFile(const DataFiles& files, Long region);

}  // namespace kelvane::ambrel
