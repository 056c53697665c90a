#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/ambrel/data_files.h"
#include "components/ambrel/schedule/codes.h"

namespace kelvane::ambrel {

/// The instance's own copy of the text that comes with EiBi's schedules and tells the sites.
inline constexpr const char* kSitesName = "sites-eibi.txt";

/// The codes' words from the best file that can be read; what was wrong is added to `notes`.
std::shared_ptr<const Codes> loadCodes(const DataFiles& files, std::vector<std::string>& notes);

}  // namespace kelvane::ambrel
