// The part of the component that loads data, and finds words for what was found.

#include <utility>

#include "base/safe_file.h"
#include "components/ambrel/ambrel_core.h"
#include "components/ambrel/bands/region_store.h"
#include "components/ambrel/schedule/codes_file.h"
#include "components/ambrel/schedule/schedule_store.h"
#include "components/ambrel/stations/own_stations.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

namespace {

std::string countsOf(const StationList& list) {
  std::string text = std::to_string(list.count) + " broadcasts";
  if (list.inactive > 0) text += ", " + std::to_string(list.inactive) + " inactive ones left out";
  if (list.unknownDays > 0)
    text += ", " + std::to_string(list.unknownDays) + " with days that were not understood";
  text += ".";
  if (list.problems.count > 0) text += " " + list.problems.text();
  return text;
}

}  // namespace

void AmbrelCore::lookAtClock() {
  lookAtOwnFile();
  const auto found = stations_.found();
  if (!found || stations_.airTime().minute() == found->minute) return;
  const std::string told = words()->name + words()->info + words()->extra;
  words_.reset();
  stations_.lookAgain();
  if (told != words()->name + words()->info + words()->extra) raiseDataUpdated();
}

bool AmbrelCore::importSchedule(const std::filesystem::path& file) {
  return load([this, file](const DataFiles& files) {
    if (const auto other = importOther(file, files)) {
      if (!*other) return Loaded{std::nullopt, other->reason()};
      Loaded loaded{loadStations(files, std::nullopt), **other};
      loaded.codes = loadCodes(files, loaded.openNotes);
      return loaded;
    }
    StationList list = readScheduleFile(file, files.disk());
    if (!list.refusal.empty())
      return Loaded{std::nullopt, list.origin + " was not loaded. " + list.refusal +
                                      " The data that was there stays."};
    std::string words =
        list.origin + " was loaded: season " + list.season->code() + ", " + countsOf(list);
    scheduleKept_ = keepSchedule(list, files);
    if (!scheduleKept_)
      words += " It could not be kept for the next start: " + scheduleKept_.reason();
    return Loaded{loadStations(files, std::move(list)), std::move(words)};
  });
}

bool AmbrelCore::reload() {
  asking_ = false;
  return load([](const DataFiles& files) {
    Loaded loaded{loadStations(files, std::nullopt), "All lists were read anew."};
    loaded.bands.emplace(files, loaded.planNotes);
    loaded.region = keptRegion(files, loaded.planNotes);
    loaded.codes = loadCodes(files, loaded.openNotes);
    return loaded;
  });
}

bool AmbrelCore::dropSchedule() {
  return load([](const DataFiles& files) {
    const std::filesystem::path aside = dropKeptSchedule(files);
    std::string words = aside.empty() ? "There was no schedule to put aside."
                                      : "The schedule was put aside as " + pathText(aside) + ".";
    return Loaded{loadStations(files, std::nullopt), std::move(words)};
  });
}

void AmbrelCore::readOwn() {
  if (loading_) ownWaits_ = true;
  if (loading_ || !files_) return;
  const std::string words = loadWords_;
  const StationData data = data_;
  load([data, words](const DataFiles& files) {
    return Loaded{withOwnStations(data, files), words};
  });
}

// Another process of the instance may have changed it.
void AmbrelCore::lookAtOwnFile() {
  if (!files_ || loading_) return;
  std::string stamp = ownStationsStamp(*files_);
  if (std::exchange(ownStamp_, std::move(stamp)) != ownStamp_) readOwn();
}

bool AmbrelCore::load(std::function<Loaded(const DataFiles&)> read) {
  if (loading_ || !files_) return false;
  std::function<void()> job = [this, files = *files_, read = std::move(read)]() mutable {
    files.look();
    const auto loaded = std::make_shared<Loaded>(read(files));
    queue_.post([this, loaded] { take(*loaded); });
  };
  Failed failed = [this](const std::string& why) {
    const auto words = "Nothing was read: " + why + ". The data that was there stays.";
    const auto nothing = std::make_shared<Loaded>(Loaded{std::nullopt, words});
    queue_.post([this, nothing] { take(*nothing); });
  };
  // From here on one of the two ends it, also where there is no memory.
  loading_ = true;
  background_.run("reading lists", std::move(job), std::move(failed));
  return true;
}

void AmbrelCore::take(Loaded& loaded) {
  loading_ = false;
  loadWords_ = std::move(loaded.words);
  if (loaded.codes) {
    codes_ = std::move(loaded.codes);
    openNotes_ = std::move(loaded.openNotes);
  }
  if (loaded.bands && bands_) {
    const bool regionLate = !planNotes_.unreadable.empty() && !regionChosen_;
    setBands(std::move(*loaded.bands));
    if (regionLate) bands_->selectRegion(loaded.region);
    planNotes_ = std::move(loaded.planNotes);
  }
  if (loaded.data) setData(std::move(*loaded.data));
  askAgain();
  queue_.tell([](FrequencyListener& listener) { listener.FrqDataUpdated(); });
  if (std::exchange(ownWaits_, false)) readOwn();
}

void AmbrelCore::setData(StationData data) {
  const auto found = stations_.found();
  const Hz known = found ? found->frequency : -1;
  words_.reset();
  data_ = std::move(data);
  stations_.setTable(data_.table);
  if (known >= 0) stations_.find(known, 0);
}

/// Why files that are there cannot be read now, a line each.
std::string AmbrelCore::unreadable() const {
  std::string words;
  const auto add = [&words](const std::string& why) { words += (words.empty() ? "" : "\n") + why; };
  for (const StationList& list : data_.refused)
    if (list.unreadable) add(list.refusal);
  for (const FileNotes* notes : {&openNotes_, &planNotes_})
    for (const std::string& why : notes->unreadable) add(why);
  return words;
}

/// Beside the window, which did not wait for whoever holds a file.
void AmbrelCore::readHeldAgain() {
  if (owned_ && !unreadable().empty()) reload();
}

/// A file that another program holds is as good as it was: the operator may have it read anew.
void AmbrelCore::askAgain() {
  const std::string words = unreadable();
  if (words.empty() || !owned_ || std::exchange(asking_, true)) return;
  windows_.askAgain(words + "\n\nUntil it can be read the program goes on without it.",
                    [this] { queue_.post([this] { reload(); }); });
}

void AmbrelCore::setBands(Bands bands) {
  bands.selectRegion(bands_->region());
  bands.moveTo(bands_->frequency());
  bands_ = std::move(bands);
}

void AmbrelCore::raiseDataUpdated() {
  queue_.post(
      [this] { queue_.tell([](FrequencyListener& listener) { listener.FrqDataUpdated(); }); });
}

void AmbrelCore::choose(Hz frequency, Setting mode, Setting filter) {
  queue_.post([=, this] {
    queue_.tell(
        [=](FrequencyListener& listener) { listener.FrqSelected(frequency, mode, filter); });
  });
}

const StationWords* AmbrelCore::words() {
  const auto& found = stations_.found();
  if (!found) return nullptr;
  if (!words_) words_ = wordsFor(*data_.table, *found, stations_.lastTime(), *codes_);
  return &*words_;
}

Recommendation AmbrelCore::recommendationFor(const StationTable& table, Hz frequency,
                                             const StationDetails& details) const {
  // Before the plan is there, nothing is known of the band: AM with the bandwidth to suit it.
  const BandEntry band = bands_ ? bands_->plan()[bands_->plan().at(frequency)]
                                : BandEntry{{}, 0, 0, 1000, static_cast<Setting>(Mode::Am), 6000};
  return recommendation(table.atFrequency(frequency), table, details, band);
}

std::optional<Recommendation> AmbrelCore::foundRecommendation() {
  const auto& found = stations_.found();
  if (!found) return std::nullopt;
  const StationDetails details =
      detailsOf(*data_.table, found->frequency, *found->record, stations_.lastTime(), *codes_);
  return recommendationFor(*data_.table, found->frequency, details);
}

}  // namespace kelvane::ambrel
