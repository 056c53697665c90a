#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/ambrel/data_files.h"
#include "components/ambrel/schedule/codes.h"

namespace kelvane::ambrel {

/// The codes' words from the best file that can be read; what was wrong is added to `notes`.
std::shared_ptr<const Codes> loadCodes(const DataFiles& files, std::vector<std::string>& notes);

}  // namespace kelvane::ambrel
