#include "components/sondrel/rigctld/rigctld_report_box.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <variant>

#include "components/sondrel/rigctld/rigctld_capabilities.h"

namespace kelvane::sondrel {

namespace {

/// More than a link brings in the time that a busy program takes to collect it.
constexpr std::size_t kManyReports = 200;

}  // namespace

bool RigctldReportBox::put(std::vector<RigReport> reports, std::uint32_t order) {
  const std::lock_guard lock(mutex_);
  const bool wasEmpty = entries_.empty();
  for (auto& report : reports) add({std::move(report), order});
  return wasEmpty && !entries_.empty();
}

std::vector<RigctldReportBox::Entry> RigctldReportBox::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(entries_, {});
}

void RigctldReportBox::add(Entry entry) {
  if (const auto* value = std::get_if<ValueReport>(&entry.report)) dropOlder(*value);
  const bool link = std::holds_alternative<LinkReport>(entry.report);
  if (link && entries_.size() >= kManyReports) dropFormerLinks();
  entries_.push_back(std::move(entry));
}

/// What is older than the link's last change stays: it belongs to what the link was then.
void RigctldReportBox::dropOlder(const ValueReport& newer) {
  for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
    const auto* value = std::get_if<ValueReport>(&entry->report);
    if (!value) return;
    if (value->item != newer.item || (value->ticket != 0 && newer.ticket == 0)) continue;
    entries_.erase(std::next(entry).base());
    return;
  }
}

/// A link that came and went for long is what it was last, with what was found on its last way up,
/// which is told before it is.
void RigctldReportBox::dropFormerLinks() {
  const auto isLink = [](const Entry& entry) {
    return std::holds_alternative<LinkReport>(entry.report);
  };
  const auto last = std::find_if(entries_.rbegin(), entries_.rend(), isLink);
  if (last == entries_.rend()) return;
  const auto former = std::find_if(std::next(last), entries_.rend(), isLink);
  entries_.erase(entries_.begin(), former.base());
}

}  // namespace kelvane::sondrel
