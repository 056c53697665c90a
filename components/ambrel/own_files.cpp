#include "components/ambrel/own_files.h"

#include <string>
#include <string_view>
#include <system_error>

#include "base/file_lock.h"
#include "components/ambrel/bands/bands.h"

namespace kelvane::ambrel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargest = 4u << 20;
constexpr const char* kKnownName = "known-own.txt";
constexpr std::string_view kKnownHead =
    "# Known frequencies of your own\r\n"
    "#\r\n"
    "# \"[Name]\" begins a set. One known frequency a line:\r\n"
    "#   kHz ; name ; info ; extra ; mode ; filter\r\n"
    "#   kHz     with a decimal point where need be\r\n"
    "#   mode    AM FM USB LSB CW RTTY FAX SAM DRM; empty: as in the band plan\r\n"
    "#   filter  bandwidth in Hz; empty: what suits the mode\r\n"
    "# Name and kHz must be there; the rest may be empty. \"#\" starts a comment line.\r\n"
    "#\r\n"
    "# Save this file, then have everything read anew.\r\n"
    "\r\n"
    "[My sets]\r\n";

bool isThere(const fs::path& file) {
  std::error_code error;
  return fs::is_regular_file(file, error);
}

Failure notMade(const fs::path& file, const std::string& why) {
  return {pathText(file) + " was not made. " + why};
}

OwnFile made(const fs::path& file, std::string_view text, FileSteps& disk) {
  // Another program of the instance may have made it, and the operator may have written in it.
  const auto unlessThere = [text](const FileReading& now) {
    return now.how == FileReading::Missing ? FileChange(std::string(text)) : kUnchanged;
  };
  const Result<> written = changeFile(file, kLargest, disk, unlessThere);
  if (!written) return notMade(file, written.reason());
  return file;
}

}  // namespace

OwnFile ownKnownFile(const DataFiles& files) {
  const fs::path own = files.ownFolder() / kKnownName;
  return isThere(own) ? own : made(own, kKnownHead, files.disk());
}

OwnFile ownPlanFile(const DataFiles& files, Long region) {
  const std::string name = planFileName(region);
  const fs::path own = files.ownFolder() / name;
  if (isThere(own)) return own;
  std::string reason = "There is no " + name + " to begin with.";
  DataFiles now = files;
  now.look();
  for (const fs::path& file : now.named(name)) {
    const FileReading reading = files.disk().read(file, kLargest);
    if (reading.how == FileReading::Whole) return made(own, reading.content, files.disk());
    reason = reading.reason;
  }
  return notMade(own, reason);
}

}  // namespace kelvane::ambrel
