#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/ambrel/bands.h"
#include "components/ambrel/component_windows.h"
#include "components/ambrel/data_files.h"
#include "contract/components.h"

namespace kelvane::ambrel {

/// The present moment in UTC, asked anew whenever a rule needs it.
using UtcClock = std::function<std::chrono::system_clock::time_point()>;

/// The frequency component without a window system: regions and band plans, sets of known
/// frequencies, a broadcast schedule. Rules and units of each operation stand in
/// contract/ambrel_operations.inc. Lives on the user-interface thread.
class AmbrelCore final : public FrequencyComponent {
 public:
  /// `dataFolder` holds the texts shipped with the program. `userFolder` is the program's folder in
  /// the user's local application data; each instance keeps its own below it, and files of the
  /// user's own there win over the shipped ones. `wake` is called, from any thread, when an event
  /// waits for `deliverEvents`. Neither folder need exist.
  AmbrelCore(std::filesystem::path dataFolder, std::filesystem::path userFolder, UtcClock utcNow,
             std::function<void()> wake, ComponentWindows& windows);
  ~AmbrelCore() override;

  /// A listener must be removed before it ends.
  void addListener(FrequencyListener& listener);
  void removeListener(FrequencyListener& listener);

  /// Hands the waiting events to the listeners. Called after each wake, outside any call into the
  /// component.
  void deliverEvents();

  /// What went wrong while the data was opened, in words, a line each; empty when nothing did.
  std::string notes() const;

#define ASK(name, Result, fallback, params, args) Answer<Result> name params override;
#define TELL(name, params, args) Outcome name params override;
#define WALK(name, params, args) Answer<FrqRecord> name params override;
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK

 private:
  std::filesystem::path dataFolder_;
  std::filesystem::path userFolder_;
  UtcClock utcNow_;
  std::function<void()> wake_;
  ComponentWindows& windows_;
  std::vector<FrequencyListener*> listeners_;
  std::vector<std::string> notes_;
  std::optional<DataFiles> files_;
  std::optional<Bands> bands_;
};

}  // namespace kelvane::ambrel
