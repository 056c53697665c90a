#include "components/ambrel/bands.h"

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

BandPlan loadPlan(const DataFiles& files, const std::string& name,
                  std::vector<std::string>& notes) {
  for (const auto& file : files.named(name)) {
    std::string reason;
    const auto text = readFile(file, kLargestPlan, &reason);
    BandPlanReading reading;
    if (text)
      reading = readBandPlan(*text);
    else
      reading.problems.push_back(reason);
    tell(file, reading.problems, notes);
    if (reading.plan) return std::move(*reading.plan);
  }
  notes.push_back("No readable " + name + ": a coarse band plan is used instead.");
  return builtInBandPlan();
}

}  // namespace

Bands::Bands(const DataFiles& files, std::vector<std::string>& notes) {
  for (Long region = 1; region <= kRegions; ++region)
    plans_.push_back(loadPlan(files, "bandplan-r" + std::to_string(region) + ".txt", notes));
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
