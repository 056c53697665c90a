#pragma once

#include <string>

#include "components/ambrel/data_files.h"
#include "contract/types.h"

namespace kelvane::ambrel {

/// The region (from 0) that the instance was left in, 0 where that is not known; what cannot be
/// read now is added to `notes`.
Long keptRegion(const DataFiles& files, FileNotes& notes);

/// Keeps the region for the next start. Answers why it could not, in words; empty when it is kept.
Result<> keepRegion(const DataFiles& files, Long region);

}  // namespace kelvane::ambrel
