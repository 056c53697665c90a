#include "components/ambrel/bands/bands.h"

#include <algorithm>
#include <utility>

#include "base/safe_file.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kLargestPlan = 4u << 20;
constexpr std::size_t kProblemsTold = 3;

void tell(const std::filesystem::path& file, const std::vector<std::string>& problems,
          std::vector<std::string>& notes) {
  for (std::size_t i = 0; i < std::min(problems.size(), kProblemsTold); ++i)
    notes.push_back("Band plan " + pathText(file) + ": " + problems[i]);
  if (problems.size() > kProblemsTold)
    notes.push_back("Band plan " + pathText(file) + ": and " +
                    std::to_string(problems.size() - kProblemsTold) + " more problems");
}

}  // namespace

std::string planFileName(Long region) { return "bandplan-r" + std::to_string(region + 1) + ".txt"; }

BandPlan Bands::load(const DataFiles& files, Long region, FileNotes& notes) {
  const std::string name = planFileName(region);
  for (const auto& file : files.named(name)) {
    const FileReading content = readWhenFree(file, kLargestPlan, files.disk());
    BandPlanReading reading;
    if (content.how == FileReading::Whole)
      reading = readBandPlan(content.content);
    else
      reading.problems.push_back(content.reason);
    if (content.how == FileReading::Unreadable) notes.unreadable.push_back(content.reason);
    tell(file, reading.problems, notes.wrong);
    const bool used = reading.plan.has_value();
    files_.push_back({region, file, !files.isShipped(file), used, used ? reading.plan->size() : 0,
                      std::move(reading.problems)});
    if (used) return std::move(*reading.plan);
  }
  notes.wrong.push_back("No readable " + name + ": a coarse band plan is used instead.");
  return builtInBandPlan();
}

Bands::Bands(const DataFiles& files, FileNotes& notes) {
  for (Long region = 0; region < kRegions; ++region) plans_.push_back(load(files, region, notes));
}

void Bands::selectRegion(Long region) {
  region_ = region;
  place_ = plan().at(frequency_);
  // Another region's entry is another entry, also where it has the same name and place.
  reported_ = kNowhere;
}

bool Bands::moveTo(Hz frequency) {
  frequency_ = frequency;
  place_ = plan().at(frequency);
  return std::exchange(reported_, place_) != place_;
}

Hz Bands::neighbour(Long direction) const {
  if (direction > 0) return place_ + 1 < plan().size() ? here().end : frequency_;
  return place_ > 0 ? here().start - 1 : frequency_;
}

}  // namespace kelvane::ambrel
