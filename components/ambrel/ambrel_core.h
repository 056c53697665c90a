#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/background.h"
#include "components/ambrel/bands/bands.h"
#include "components/ambrel/component_windows.h"
#include "components/ambrel/data_files.h"
#include "components/ambrel/event_queue.h"
#include "components/ambrel/schedule/codes.h"
#include "components/ambrel/stations/known_stations.h"
#include "components/ambrel/stations/station_data.h"
#include "components/ambrel/stations/station_words.h"
#include "components/ambrel/utc.h"
#include "contract/components.h"

namespace kelvane::ambrel {

/// The frequency component without a window system: regions and band plans, sets of known
/// frequencies, a broadcast schedule. Rules and units of each operation stand in
/// contract/ambrel_operations.inc. Lives on the user-interface thread; only loading a schedule and
/// keeping files is done beside it.
class AmbrelCore final : public FrequencyComponent {
 public:
  /// `dataFolder` holds the texts shipped with the program. `userFolder` is the program's folder in
  /// the user's local application data; each instance keeps its own below it, and files of the
  /// user's own there win over the shipped ones. `wake` is called, from any thread, when an event
  /// waits for `deliverEvents`. Neither folder need exist.
  AmbrelCore(std::filesystem::path dataFolder, std::filesystem::path userFolder, UtcClock utcNow,
             std::function<void()> wake, ComponentWindows& windows,
             std::shared_ptr<FileSteps> disk = std::make_shared<FileSteps>());
  ~AmbrelCore() override;

  /// A listener must be removed before it ends.
  void addListener(FrequencyListener& listener) { queue_.addListener(listener); }
  void removeListener(FrequencyListener& listener) { queue_.removeListener(listener); }

  /// Hands the waiting events to the listeners. Called after each wake, outside any call into the
  /// component.
  void deliverEvents() { queue_.deliver(); }

  /// What is wrong with the data, in words, a line each; empty when nothing is.
  std::string notes() const;

  /// Raises FrqDataUpdated when another station speaks for the known frequency now than when it
  /// was found. To be called every few seconds by whoever has a timer.
  void lookAtClock();

  // What the component's windows work with.

  /// Begins to take in a schedule that the user points at, in the place of the present one; it
  /// ends in FrqDataUpdated, and `loadWords` then says how it went. A file that is no schedule
  /// changes nothing. False while another load is under way.
  bool importSchedule(const std::filesystem::path& file);
  /// Begins to read all texts anew, the band plans and codes among them; ends as an import does.
  bool reload();
  bool isLoading() const { return loading_; }
  /// How the last import or reload went, for the operator.
  const std::string& loadWords() const { return loadWords_; }
  /// Begins to read the operator's own list anew; what else is known stays.
  void readOwn();
  /// Puts the kept schedule aside and reads all texts anew; ends as an import does.
  bool dropSchedule();
  /// Does something on the user-interface thread, at the next `deliverEvents`. From any thread.
  void post(std::function<void()> action) { queue_.post(std::move(action)); }
  /// Tells the listeners that the operator chose a frequency.
  void choose(Hz frequency, Setting mode, Setting filter);

  const StationData& data() const { return data_; }
  std::shared_ptr<const Codes> codes() const { return codes_; }
  /// None before the plan was asked for.
  const Bands* bands() const { return bands_ ? &*bands_ : nullptr; }
  /// Where the database is positioned; -1 where it never was.
  Hz position() const { return stations_.position(); }
  const DataFiles* files() const { return files_ ? &*files_ : nullptr; }
  /// The present minute for the records of the present data.
  const AirTime& airTime() { return stations_.airTime(); }
  /// What to receive a station with; the details are those of one of the table's records at that
  /// frequency.
  Recommendation recommendationFor(const StationTable& table, Hz frequency,
                                   const StationDetails& details) const;

#define ASK(name, Result, fallback, params, args) Answer<Result> name params override;
#define TELL(name, params, args) Outcome name params override;
#define WALK(name, params, args) Answer<FrqRecord> name params override;
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK

 private:
  /// What a load brought; without data nothing changes.
  struct Loaded {
    std::optional<StationData> data;
    std::string words;
    std::optional<Bands> bands = {};
    Long region = 0;
    FileNotes planNotes = {};
    std::shared_ptr<const Codes> codes = {};
    FileNotes openNotes = {};
  };

  void lookAtOwnFile();
  bool load(std::function<Loaded(const DataFiles&)> read);
  void take(Loaded& loaded);
  void setData(StationData data);
  DataFiles filesNow() const;
  std::string unreadable() const;
  void readHeldAgain();
  void askAgain();
  void setBands(Bands bands);
  void raiseDataUpdated();
  /// The words for what was found, worked out when first asked for; none where nothing is found.
  const StationWords* words();
  std::optional<Recommendation> foundRecommendation();

  std::filesystem::path dataFolder_;
  std::filesystem::path userFolder_;
  std::shared_ptr<FileSteps> disk_;
  ComponentWindows& windows_;
  FileNotes openNotes_;
  FileNotes planNotes_;
  std::optional<DataFiles> files_;
  std::optional<Bands> bands_;
  std::shared_ptr<const Codes> codes_ = std::make_shared<const Codes>();
  StationData data_;
  KnownStations stations_;
  std::optional<StationWords> words_;
  bool loading_ = false;
  bool owned_ = false;         ///< somebody sits before the windows
  bool regionChosen_ = false;  ///< by the operator: a kept one that is read late counts no more
  bool asking_ = false;        ///< whether to read anew what could not be read
  bool ownWaits_ = false;      ///< the own list changed while something was being read
  std::optional<GeoPoint> ownPlace_;
  std::string ownStamp_;  ///< of its file when it was last read
  std::string loadWords_;
  // Why what the operator chose could not be kept; the background's while that is at work.
  Result<> regionKept_, scheduleKept_;
  EventQueue queue_;
  Background background_;  ///< last, so that its jobs end before what they use
};

}  // namespace kelvane::ambrel
