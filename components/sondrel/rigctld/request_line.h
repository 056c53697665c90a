#pragma once

#include <deque>
#include <optional>

#include "base/time.h"
#include "components/sondrel/items.h"

namespace kelvane::sondrel {

/// Requests on their way to a slow receiver: one at a time, each taking its time; a newer request
/// takes the place of one for the same item that has not set out yet.
class RequestLine {
 public:
  void add(const Request& request, milliseconds answerTime, Instant now);
  /// The request that has arrived by now, if one has; the next one sets out then.
  std::optional<Request> arrived(milliseconds answerTime, Instant now);
  void clear() { requests_.clear(); }
  Instant nextDue() const { return requests_.empty() ? kNever : due_; }

 private:
  std::deque<Request> requests_;  ///< the first one is on its way
  Instant due_ = kNever;
};

}  // namespace kelvane::sondrel
