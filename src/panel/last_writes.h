#pragma once

#include <functional>
#include <string>

#include "base/result.h"
#include "settings/settings.h"
#include "ui/file_flows.h"

namespace kelvane {

/// Why the program ends.
enum class Ending {
  ByOperator,
  WithSystem,  ///< the computer is going down: nobody answers questions any more
};

/// Something that has to be on the disk before the program ends.
struct LastWrite {
  /// Has it written; fails with what could not be and what became of it.
  std::function<Result<>()> finish;
  std::string name = {};  ///< of a file that may be proposed for it, and its extension
  std::string extension = "txt";
  /// Writes it into a file of the operator's choice. None where there is nothing to choose.
  std::function<Result<>(const std::string& file)> elsewhere = {};
};

/// Has things written before the window goes. What cannot be is told, and another place is offered
/// for it; where the system ends it is told at the next start.
class LastWrites {
 public:
  LastWrites(MessageBoxes& boxes, FileFlows& files, SettingsStore& settings, Ending how)
      : boxes_(boxes), files_(files), settings_(settings), ending_(how) {}

  void finish(const LastWrite& write);

  /// What could not be told when the program ended with the system; once.
  static std::string takeNote(SettingsStore& settings);

 private:
  void ask(const LastWrite& write, Result<> result);

  MessageBoxes& boxes_;
  FileFlows& files_;
  SettingsStore& settings_;
  Ending ending_;
  std::string note_;
};

}  // namespace kelvane
