#include "components/ambrel/ambrel_core.h"

#include <utility>

#include "base/barrier.h"
#include "base/one_try.h"
#include "components/ambrel/bands/region_store.h"
#include "components/ambrel/schedule/codes_file.h"
#include "components/ambrel/stations/own_stations.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

AmbrelCore::AmbrelCore(std::filesystem::path dataFolder, std::filesystem::path userFolder,
                       UtcClock utcNow, std::function<void()> wake, ComponentWindows& windows,
                       std::shared_ptr<FileSteps> disk)
    : dataFolder_(std::move(dataFolder)),
      userFolder_(std::move(userFolder)),
      disk_(std::move(disk)),
      windows_(windows),
      data_{std::make_shared<const StationTable>(), {}},
      stations_(std::move(utcNow)),
      queue_(std::move(wake)) {}

AmbrelCore::~AmbrelCore() = default;

std::string AmbrelCore::notes() const {
  std::string text;
  const auto add = [&text](const std::vector<std::string>& notes) {
    for (const std::string& note : notes) text += (text.empty() ? "" : "\n") + note;
  };
  add(openNotes_.wrong);
  add(planNotes_.wrong);
  add(problemsOf(data_));
  return text;
}

/// A window that is being opened waits for nobody who holds a file; a script does, since it may not
/// heed events.
DataFiles AmbrelCore::filesNow() const {
  return owned_ ? files_->on(std::make_shared<OneTry>(*disk_)) : *files_;
}

Outcome AmbrelCore::OpenFrqConfig(Text instance) {
  openNotes_ = planNotes_ = {};
  bands_.reset();
  files_.emplace(dataFolder_, userFolder_, instance, disk_);
  const DataFiles files = filesNow();
  codes_ = loadCodes(files, openNotes_);
  ownStamp_ = ownStationsStamp(files);
  setData(loadStations(files, std::nullopt));
  readHeldAgain();
  return Outcome::Done;
}

Outcome AmbrelCore::InitFrqPlan(Long plan) {
  if (!files_ || plan != 0) return Outcome::Failed;
  planNotes_ = {};
  const DataFiles files = filesNow();
  bands_.emplace(files, planNotes_);
  bands_->selectRegion(keptRegion(files, planNotes_));
  regionChosen_ = false;
  readHeldAgain();
  return Outcome::Done;
}

Answer<Long> AmbrelCore::GetFrqRegion() {
  if (!bands_) return Answer<Long>::failed(0);
  return bands_->region();
}

Answer<Long> AmbrelCore::NextFrqRegion() {
  if (!bands_) return Answer<Long>::failed(0);
  const Long region = (bands_->region() + 1) % kRegions;
  bands_->selectRegion(region);
  regionChosen_ = true;
  background_.run("keeping the region",
                  [this, files = *files_, region] {
                    regionKept_ = keepRegion(files, region);
                    if (!regionKept_)
                      queue_.post([this, lost = regionKept_.reason()] {
                        openNotes_.wrong.push_back(lost + ".");
                      });
                  },
                  {});
  return region;
}

Answer<Flag> AmbrelCore::SetFrqFrequency(Hz frequency) {
  if (!bands_ || frequency < 0) return Answer<Flag>::failed(false);
  const bool moved = frequency != stations_.position();
  stations_.moveTo(frequency);
  if (moved) windows_.moved();
  return bands_->moveTo(frequency);
}

Answer<Text> AmbrelCore::GetFrqBandName() {
  if (!bands_) return Answer<Text>::failed({});
  return bands_->here().name;
}

Answer<Hz> AmbrelCore::GetFrqBandStep() {
  if (!bands_) return Answer<Hz>::failed(0);
  return bands_->here().step;
}

Answer<Setting> AmbrelCore::GetFrqBandFilter() {
  if (!bands_) return Answer<Setting>::failed(0);
  return bands_->here().filter;
}

Answer<Setting> AmbrelCore::GetFrqBandMode() {
  if (!bands_) return Answer<Setting>::failed(-1);
  return bands_->here().mode;
}

Answer<Hz> AmbrelCore::NextFrqBand(Long direction) {
  if (!bands_) return Answer<Hz>::failed(-1);
  return bands_->neighbour(direction);
}

Answer<Hz> AmbrelCore::GetFrqBandStart() {
  if (!bands_) return Answer<Hz>::failed(-1);
  return bands_->here().start;
}

Answer<FrqRecord> AmbrelCore::NextFrqKnown(Long direction) {
  words_.reset();
  return stations_.walkAll(direction);
}

Answer<FrqRecord> AmbrelCore::NextFrqSet(Long direction) {
  words_.reset();
  return stations_.walkSets(direction);
}

Answer<Long> AmbrelCore::GetFrqSet() { return stations_.currentSet(); }

Answer<FrqRecord> AmbrelCore::NextFrqInSet(Long set, Long direction) {
  words_.reset();
  return stations_.walkInSet(set, direction);
}

Answer<Flag> AmbrelCore::FindRxKnownFrequency(Hz frequency, Hz tolerance) {
  words_.reset();
  return stations_.find(frequency, tolerance);
}

Answer<Hz> AmbrelCore::GetRxKnownFrequency() {
  if (!stations_.found()) return Answer<Hz>::failed(-1);
  return stations_.found()->frequency;
}

Answer<Text> AmbrelCore::GetFrqKnownName() {
  if (!words()) return Answer<Text>::failed({});
  return words()->name;
}

Answer<Text> AmbrelCore::GetFrqKnownInfo() {
  if (!words()) return Answer<Text>::failed({});
  return words()->info;
}

Answer<Text> AmbrelCore::GetFrqKnownExtra() {
  if (!words()) return Answer<Text>::failed({});
  return words()->extra;
}

Answer<Setting> AmbrelCore::GetFrqKnownFilter() {
  const auto found = foundRecommendation();
  if (!found) return Answer<Setting>::failed(0);
  return found->filter;
}

Answer<Setting> AmbrelCore::GetFrqKnownMode() {
  const auto found = foundRecommendation();
  if (!found) return Answer<Setting>::failed(-1);
  return found->mode;
}

Outcome AmbrelCore::ShowFrqKnownList() {
  windows_.showKnownList(*this);
  return Outcome::Done;
}

Outcome AmbrelCore::EditFrqDatabase() {
  windows_.showSource(*this);
  return Outcome::Done;
}

Answer<Text> AmbrelCore::GetFrqModeName(Setting mode) { return Text(modeName(mode)); }

Outcome AmbrelCore::SetFrqOwner(Long window) {
  owned_ = window != 0;
  windows_.setOwner(window);
  return Outcome::Done;
}

Outcome AmbrelCore::DataView() {
  windows_.showData(*this);
  return Outcome::Done;
}

Answer<Text> AmbrelCore::FinishFrqWriting() {
  background_.finish();
  if (!regionKept_) regionKept_ = keepRegion(*files_, bands_->region());
  std::string words;
  if (!regionKept_) words = "The region was not kept: " + regionKept_.reason() + ".";
  if (!scheduleKept_)
    words += (words.empty() ? "" : "\n") +
             ("The schedule was not kept: " + scheduleKept_.reason()) +
             ". The file that it was read from is as it was.";
  return words;
}

Outcome AmbrelCore::ReadFrqOwn() {
  if (!files_) return Outcome::Failed;
  ownStamp_ = ownStationsStamp(*files_);
  readOwn();
  return Outcome::Done;
}

Outcome AmbrelCore::SetFrqPlace(Text place) {
  ownPlace_ = readPlace(place);
  return ownPlace_ || place.empty() ? Outcome::Done : Outcome::Failed;
}

Answer<Text> AmbrelCore::GetFrqKnownPath() {
  const auto found = stations_.found();
  if (!found || !ownPlace_) return Text();
  const auto heard = heardPlace(*data_.table, *found, stations_.lastTime(), *codes_);
  if (!heard) return Text();
  const Text words = pathWords(*ownPlace_, heard->place, found->minute);
  return heard->source.empty() ? words : words + " (" + heard->source + ")";
}

Answer<Text> AmbrelCore::GetFrqNextHere() {
  const auto found = stations_.found();
  if (!found) return Text();
  return nextHere(*data_.table, *found, *codes_);
}

Answer<Text> AmbrelCore::GetFrqFaults() { return notedFaults(); }

}  // namespace kelvane::ambrel
