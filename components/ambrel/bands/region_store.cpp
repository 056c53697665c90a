#include "components/ambrel/bands/region_store.h"

#include <string>

#include "base/number.h"
#include "base/safe_file.h"
#include "components/ambrel/bands/bands.h"

namespace kelvane::ambrel {

namespace {

constexpr const char* kName = "region.txt";

}  // namespace

Long keptRegion(const DataFiles& files, FileNotes& notes) {
  const FileReading kept = readWhenFree(files.ownFolder() / kName, 100, files.disk());
  if (kept.how == FileReading::Unreadable) notes.unreadable.push_back(kept.reason);
  const auto region = wholeNumber(kept.content);
  return region && *region >= 1 && *region <= kRegions ? static_cast<Long>(*region) - 1 : 0;
}

Result<> keepRegion(const DataFiles& files, Long region) {
  const std::string text = std::to_string(region + 1) + "\r\n";
  return writeFileSafely(files.ownFolder() / kName, text, files.disk());
}

}  // namespace kelvane::ambrel
