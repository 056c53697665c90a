#include "components/ambrel/schedule/codes_file.h"

#include <string>

#include "base/safe_file.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kLargestCodes = 4u << 20;

std::shared_ptr<Codes> readCodes(const DataFiles& files, FileNotes& notes) {
  for (const auto& file : files.named("codes.txt")) {
    const FileReading reading = readWhenFree(file, kLargestCodes, files.disk());
    const std::string named = "Codes " + pathText(file) + ": ";
    if (reading.how == FileReading::Unreadable) notes.unreadable.push_back(reading.reason);
    if (reading.how != FileReading::Whole) {
      notes.wrong.push_back(named + reading.reason);
      continue;
    }
    auto codes = std::make_shared<Codes>(reading.content);
    if (!codes->problems().empty()) notes.wrong.push_back(named + codes->problems().front());
    return codes;
  }
  return std::make_shared<Codes>();
}

}  // namespace

std::shared_ptr<const Codes> loadCodes(const DataFiles& files, FileNotes& notes) {
  const std::shared_ptr<Codes> codes = readCodes(files, notes);
  const FileReading sites =
      readWhenFree(files.ownFolder() / kSitesName, kLargestCodes, files.disk());
  if (sites.how == FileReading::Whole) codes->setPlaces(SitePlaces(sites.content));
  return codes;
}

}  // namespace kelvane::ambrel
