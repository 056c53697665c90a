#pragma once

#include <filesystem>

#include "ui/calendar.h"
#include "ui/file_flows.h"

namespace kelvane {

/// What a window that reads and writes files stands on.
struct FileServices {
  FileFlows& flows;
  MessageBoxes& boxes;
  const Calendar& calendar;
  std::filesystem::path folder;  ///< where the instance keeps files of its own; made when needed
};

}  // namespace kelvane
