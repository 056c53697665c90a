#include "components/ambrel/stations/station_table.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <numeric>
#include <utility>

namespace kelvane::ambrel {

namespace {

bool lower(const ListedRecord& a, const ListedRecord& b) { return a.frequency < b.frequency; }

/// Orders by frequency and else keeps the order, digit by digit: twice as many take twice the time.
void orderByDigits(std::vector<ListedRecord>& records) {
  constexpr unsigned kBits = 11;
  std::vector<ListedRecord> ordered(records.size());
  for (unsigned shift = 0; shift < 32; shift += kBits) {
    const auto digit = [shift](const ListedRecord& record) {
      return static_cast<std::uint32_t>(record.frequency) >> shift & ((1u << kBits) - 1);
    };
    std::array<std::size_t, (1u << kBits) + 1> starts{};
    for (const ListedRecord& record : records) ++starts[digit(record) + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    for (const ListedRecord& record : records) ordered[starts[digit(record)]++] = record;
    records.swap(ordered);
  }
}

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
  constexpr std::size_t kFew = 2000;
  if (aside.size() > kFew)
    orderByDigits(aside);
  else
    std::ranges::stable_sort(aside, lower);
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
  std::size_t sets = 0;
  for (const StationList& list : lists_) sets += list.sets.size();
  sets_.reserve(sets);
  std::vector<Records> parts;
  for (std::size_t list = 0; list < lists_.size(); ++list) parts.push_back(take(list));
  const Records all = merged(std::move(parts));
  records_.reserve(all.size());
  sources_.reserve(all.size());
  makeRoom();
  for (const ListedRecord& listed : all) add(listed);
  places_.finish(records_.size());
}

/// Gives each set the room that its records, which are counted, may need.
void StationTable::makeRoom() {
  std::size_t room = 0;
  for (Set& set : sets_) {
    set.first = room;
    room += std::exchange(set.count, 0);
  }
  frequencies_.resize(room);
}

/// Takes over the next record in order of frequency.
void StationTable::add(const ListedRecord& listed) {
  Set& set = sets_[listed.record.set];
  Hz* const next = frequencies_.data() + set.first + set.count;
  const bool walked = !(listed.record.marks & Record::kSkip);
  if (walked && (set.count == 0 || next[-1] != listed.frequency)) {
    *next = listed.frequency;
    ++set.count;
  }
  if (places_.highest() != listed.frequency) places_.add(listed.frequency, records_.size());
  records_.push_back(listed.record);
  sources_.push_back(listed.source);
}

std::vector<ListedRecord> StationTable::take(std::size_t list) {
  std::vector<ListedRecord> records = std::exchange(lists_[list].records, {});
  const auto firstSet = static_cast<std::uint16_t>(sets_.size());
  for (const std::string& name : lists_[list].sets) sets_.push_back({name, list});
  for (ListedRecord& listed : records) {
    listed.record.set = static_cast<std::uint16_t>(listed.record.set + firstSet);
    ++sets_[listed.record.set].count;
  }
  order(records);
  return records;
}

std::vector<StationList> StationTable::listsAgain() const {
  std::vector<StationList> lists = lists_;
  std::vector<std::uint16_t> firstSet(lists.size(), 0);
  for (std::size_t set = sets_.size(); set-- > 0;)
    firstSet[sets_[set].list] = static_cast<std::uint16_t>(set);
  for (std::size_t place = 0; place < size(); ++place) {
    for (const Record& record : at(place)) {
      const std::size_t list = sets_[record.set].list;
      ListedRecord listed{frequency(place), record, sourceOf(record)};
      listed.record.set = static_cast<std::uint16_t>(record.set - firstSet[list]);
      lists[list].records.push_back(listed);
    }
  }
  return lists;
}

Hz StationTable::frequencyOfRecord(std::size_t record) const {
  return frequency(places_.placeOfRecord(record));
}

}  // namespace kelvane::ambrel
