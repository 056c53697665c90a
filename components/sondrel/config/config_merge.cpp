#include "components/sondrel/config/config_merge.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "contract/types.h"

namespace kelvane::sondrel {

namespace {

using Entries = std::vector<ReceiverEntry>;

Entries allOf(const ReceiverConfig& config) {
  Entries all = config.receivers;
  all.insert(all.end(), config.beyond.begin(), config.beyond.end());
  return all;
}

const ReceiverEntry* withMemories(const Entries& entries, const std::string& memories) {
  const auto found = std::ranges::find_if(entries, [&](const ReceiverEntry& entry) {
    return equalIgnoringCase(entry.memories, memories);
  });
  return found == entries.end() ? nullptr : &*found;
}

/// Whether two processes know the same of a receiver; null where one knows none.
bool same(const ReceiverEntry* a, const ReceiverEntry* b) { return a && b ? *a == *b : a == b; }

std::string clash(const std::string& name) {
  return "Another program changed " + name +
         " meanwhile. Close this list and open it again to see what it is now.";
}

bool isNamed(const Entries& entries, const ReceiverEntry& except, const std::string& name) {
  return std::ranges::any_of(entries, [&](const ReceiverEntry& entry) {
    return &entry != &except && equalIgnoringCase(entry.name, name);
  });
}

/// Gives a receiver that both added under one name another name and other memories.
void tellApart(ReceiverEntry& entry, const Entries& all) {
  std::vector<std::string> taken;
  for (const ReceiverEntry& other : all) taken.push_back(other.memories);
  entry.memories = newMemoriesName(entry, taken);
  const std::string name = entry.name;
  for (int i = 2; isNamed(all, entry, entry.name); ++i)
    entry.name = name + " (" + std::to_string(i) + ")";
}

}  // namespace

Result<ReceiverConfig> mergeConfigs(const ReceiverConfig& base, const ReceiverConfig& mine,
                                    const ReceiverConfig& theirs) {
  const Entries before = allOf(base), own = allOf(mine), other = allOf(theirs);
  Entries merged;
  std::vector<std::size_t> twice;
  for (const ReceiverEntry& entry : own) {
    const ReceiverEntry* was = withMemories(before, entry.memories);
    const ReceiverEntry* is = withMemories(other, entry.memories);
    const bool mineOnly = was && (same(is, was) || same(is, &entry));
    if (!was || mineOnly) {
      if (!was && is && *is != entry) twice.push_back(merged.size());
      merged.push_back(entry);
    } else if (entry != *was) {
      return Failure{clash(was->name)};
    } else if (is) {
      merged.push_back(*is);
    }
  }
  for (const ReceiverEntry& entry : other) {
    const ReceiverEntry* was = withMemories(before, entry.memories);
    const ReceiverEntry* is = withMemories(own, entry.memories);
    if (was && !is && *was != entry) return Failure{clash(was->name)};
    if (!was && !same(is, &entry)) merged.push_back(entry);
  }
  for (const std::size_t place : twice) tellApart(merged[place], merged);
  ReceiverConfig result = theirs;
  result.notes.clear();
  const auto ninth = merged.begin() + std::min(merged.size(), std::size_t{kMostReceivers});
  result.beyond.assign(ninth, merged.end());
  merged.erase(ninth, merged.end());
  result.receivers = std::move(merged);
  return result;
}

}  // namespace kelvane::sondrel
