#include "components/sondrel/rigctld/request_line.h"

#include <algorithm>

namespace kelvane::sondrel {

void RequestLine::add(const Request& request, milliseconds answerTime, Instant now) {
  if (requests_.empty()) {
    requests_.push_back(request);
    due_ = now + answerTime;
    return;
  }
  const auto same = std::find_if(requests_.begin() + 1, requests_.end(),
                                 [&](const Request& r) { return r.item == request.item; });
  if (same != requests_.end()) requests_.erase(same);
  // To the end: a filter that was set for the former mode must not come after a newer mode.
  requests_.push_back(request);
}

std::optional<Request> RequestLine::arrived(milliseconds answerTime, Instant now) {
  if (requests_.empty() || now < due_) return std::nullopt;
  const Request request = requests_.front();
  requests_.pop_front();
  // From when it was due, so that a late tick does not slow the line down.
  due_ += answerTime;
  return request;
}

}  // namespace kelvane::sondrel
