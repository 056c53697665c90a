#include "components/ambrel/ambrel_core.h"

#include <algorithm>
#include <utility>

#include "components/modes.h"

namespace kelvane::ambrel {

AmbrelCore::AmbrelCore(std::filesystem::path dataFolder, std::filesystem::path userFolder,
                       UtcClock utcNow, std::function<void()> wake, ComponentWindows& windows)
    : dataFolder_(std::move(dataFolder)),
      userFolder_(std::move(userFolder)),
      utcNow_(std::move(utcNow)),
      wake_(std::move(wake)),
      windows_(windows) {}

AmbrelCore::~AmbrelCore() = default;

void AmbrelCore::addListener(FrequencyListener& listener) { listeners_.push_back(&listener); }

void AmbrelCore::removeListener(FrequencyListener& listener) { std::erase(listeners_, &listener); }

void AmbrelCore::deliverEvents() {}

std::string AmbrelCore::notes() const {
  std::string text;
  for (const std::string& note : notes_) text += (text.empty() ? "" : "\n") + note;
  return text;
}

Outcome AmbrelCore::OpenFrqConfig(Text instance) {
  notes_.clear();
  bands_.reset();
  files_.emplace(dataFolder_, userFolder_, instance);
  return Outcome::Done;
}

Outcome AmbrelCore::InitFrqPlan(Long plan) {
  if (!files_ || plan != 0) return Outcome::Failed;
  bands_.emplace(*files_, notes_);
  return Outcome::Done;
}

Answer<Long> AmbrelCore::GetFrqRegion() {
  if (!bands_) return Answer<Long>::failed(0);
  return bands_->region();
}

Answer<Long> AmbrelCore::NextFrqRegion() {
  if (!bands_) return Answer<Long>::failed(0);
  bands_->selectRegion((bands_->region() + 1) % kRegions);
  return bands_->region();
}

Answer<Flag> AmbrelCore::SetFrqFrequency(Hz frequency) {
  if (!bands_ || frequency < 0) return Answer<Flag>::failed(false);
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

Answer<FrqRecord> AmbrelCore::NextFrqKnown(Long) { return Answer<FrqRecord>::failed({}); }

Answer<FrqRecord> AmbrelCore::NextFrqSet(Long) { return Answer<FrqRecord>::failed({}); }

Answer<Long> AmbrelCore::GetFrqSet() { return -1; }

Answer<FrqRecord> AmbrelCore::NextFrqInSet(Long, Long) { return Answer<FrqRecord>::failed({}); }

Answer<Flag> AmbrelCore::FindRxKnownFrequency(Hz, Hz) { return false; }

Answer<Hz> AmbrelCore::GetRxKnownFrequency() { return -1; }

Answer<Text> AmbrelCore::GetFrqKnownName() { return Text(); }

Answer<Text> AmbrelCore::GetFrqKnownInfo() { return Text(); }

Answer<Text> AmbrelCore::GetFrqKnownExtra() { return Text(); }

Answer<Setting> AmbrelCore::GetFrqKnownFilter() { return 0; }

Answer<Setting> AmbrelCore::GetFrqKnownMode() { return -1; }

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
  windows_.setOwner(window);
  return Outcome::Done;
}

Outcome AmbrelCore::DataView() {
  windows_.showData(*this);
  return Outcome::Done;
}

}  // namespace kelvane::ambrel
