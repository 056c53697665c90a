#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "components/sondrel/rigctld/rigctld_types.h"

namespace kelvane::sondrel {

/// Reports on their way from a link's thread to the user-interface thread. Where nobody collects
/// them, only the newest value of each item is kept, and the last that was found of the link.
class RigctldReportBox {
 public:
  struct Entry {
    RigReport report;
    std::uint32_t order = 0;  ///< the newest opening or closing that was known then
  };

  /// From any thread. Answers whether the box was empty, so that somebody has to be sent for it.
  bool put(std::vector<RigReport> reports, std::uint32_t order);
  /// All that is in it, in its order.
  std::vector<Entry> take();

 private:
  void add(Entry entry);
  void dropOlder(const ValueReport& newer);
  void dropFormerLinks();

  std::mutex mutex_;
  std::vector<Entry> entries_;
};

}  // namespace kelvane::sondrel
