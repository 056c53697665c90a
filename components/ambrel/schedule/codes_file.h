#pragma once

#include <memory>

#include "components/ambrel/data_files.h"
#include "components/ambrel/schedule/codes.h"

namespace kelvane::ambrel {

/// The instance's own copy of the text that comes with EiBi's schedules and tells the sites.
inline constexpr const char* kSitesName = "sites-eibi.txt";

/// The codes' words from the best file that can be read; what there is to say of others is added to
/// `notes`.
std::shared_ptr<const Codes> loadCodes(const DataFiles& files, FileNotes& notes);

}  // namespace kelvane::ambrel
