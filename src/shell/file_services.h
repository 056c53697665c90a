#pragma once

#include <filesystem>

#include "shell/file_flows.h"
#include "ui/calendar.h"

namespace kelvane {

/// What a window that reads and writes files stands on.
struct FileServices {
  FileFlows& flows;
  MessageBoxes& boxes;
  const Calendar& calendar;
  std::filesystem::path folder;  ///< where the instance keeps files of its own; made when needed
};

}  // namespace kelvane
