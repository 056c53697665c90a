#pragma once

#include "components/ambrel/data_files.h"
#include "contract/types.h"

namespace kelvane::ambrel {

/// The region (from 0) that the instance was left in; 0 where that is not known.
Long keptRegion(const DataFiles& files);

/// Keeps the region for the next start; where that fails, the next start begins with the old one.
void keepRegion(const DataFiles& files, Long region);

}  // namespace kelvane::ambrel
