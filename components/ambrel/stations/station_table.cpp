#include "components/ambrel/stations/station_table.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace kelvane::ambrel {

namespace {

bool lower(const ListedRecord& a, const ListedRecord& b) { return a.frequency < b.frequency; }

/// Orders by frequency and else keeps the order. Lists come nearly in order: what is out of it is
/// taken aside, ordered and merged back, so that an ordered list costs one pass.
void order(std::vector<ListedRecord>& records) {
  std::vector<ListedRecord> aside;
  Hz highest = std::numeric_limits<Hz>::min();
  auto kept = records.begin();
  for (const ListedRecord& record : records) {
    if (record.frequency < highest) {
      aside.push_back(record);
    } else {
      highest = record.frequency;
      *kept++ = record;
    }
  }
  if (aside.empty()) return;
  std::stable_sort(aside.begin(), aside.end(), lower);
  std::copy(aside.begin(), aside.end(), kept);
  std::inplace_merge(records.begin(), kept, records.end(), lower);
}

using Records = std::vector<ListedRecord>;

Records merged(Records a, Records b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  Records both;
  both.reserve(a.size() + b.size());
  std::merge(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both), lower);
  return both;
}

/// All parts in order; of one frequency those of the first part first. Neighbours are joined again
/// and again, so that many short lists beside a long one do not copy that one many times.
Records merged(std::vector<Records> parts) {
  while (parts.size() > 1) {
    std::size_t joined = 0;
    for (std::size_t i = 0; i < parts.size(); i += 2) {
      const bool paired = i + 1 < parts.size();
      parts[joined++] = merged(std::move(parts[i]), paired ? std::move(parts[i + 1]) : Records());
    }
    parts.resize(joined);
  }
  return parts.empty() ? Records() : std::move(parts.front());
}

}  // namespace

StationTable::StationTable(std::vector<StationList> lists) : lists_(std::move(lists)) {
  std::vector<Records> parts;
  for (std::size_t list = 0; list < lists_.size(); ++list) parts.push_back(take(list));
  const Records all = merged(std::move(parts));
  records_.reserve(all.size());
  sources_.reserve(all.size());
  Hz last = -1;
  for (const ListedRecord& listed : all) {
    std::vector<Hz>& ofSet = sets_[listed.record.set].frequencies;
    if (ofSet.empty() || ofSet.back() != listed.frequency) ofSet.push_back(listed.frequency);
    if (listed.frequency != last) places_.add(listed.frequency, records_.size());
    last = listed.frequency;
    records_.push_back(listed.record);
    sources_.push_back(listed.source);
  }
  places_.finish(records_.size());
}

std::vector<ListedRecord> StationTable::take(std::size_t list) {
  std::vector<ListedRecord> records = std::exchange(lists_[list].records, {});
  const auto firstSet = static_cast<std::uint16_t>(sets_.size());
  for (const std::string& name : lists_[list].sets) sets_.push_back({name, list, {}});
  if (firstSet > 0) {
    for (ListedRecord& listed : records)
      listed.record.set = static_cast<std::uint16_t>(listed.record.set + firstSet);
  }
  order(records);
  return records;
}

Hz StationTable::frequencyOfRecord(std::size_t record) const {
  return frequency(places_.placeOfRecord(record));
}

}  // namespace kelvane::ambrel
