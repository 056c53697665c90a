#include "components/ambrel/region_store.h"

#include <string>

#include "base/number.h"
#include "base/safe_file.h"
#include "components/ambrel/bands.h"

namespace kelvane::ambrel {

namespace {

constexpr const char* kName = "region.txt";

}  // namespace

Long keptRegion(const DataFiles& files) {
  const auto text = readFile(files.ownFolder() / kName, 100);
  const auto region = text ? wholeNumber(*text) : std::nullopt;
  return region && *region >= 1 && *region <= kRegions ? static_cast<Long>(*region) - 1 : 0;
}

void keepRegion(const DataFiles& files, Long region) {
  writeFileSafely(files.ownFolder() / kName, std::to_string(region + 1) + "\r\n");
}

}  // namespace kelvane::ambrel
