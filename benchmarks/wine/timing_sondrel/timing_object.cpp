#include "benchmarks/wine/timing_sondrel/timing_object.h"

#include <algorithm>
#include <cmath>

namespace kelvane::bench {

TimingObject::TimingObject(com::ObjectCount& count, com::TypeLibrary types)
    : SondrelFace(std::move(types)), counted_(count), thread_([this] { run(); }) {}

TimingObject::~TimingObject() {
  ending_ = true;
  SetEvent(timing_.request());
  thread_.join();
}

void TimingObject::deliverEvents() {
  const Hz tuned = tuned_.exchange(0);
  receivers_.deliver(listener(), tuned, metersDue_.exchange(0));
  if (const LONG level = level_.exchange(0); level != 0) receivers_.level(listener(), level);
}

void TimingObject::run() {
  while (!ending_) {
    if (WaitForSingleObject(timing_.request(), beat()) != WAIT_OBJECT_0) continue;
    if (const Hz wanted = timing_->wanted.exchange(0); wanted > 0) tuned_ = wanted;
    if (const LONG level = timing_->level.exchange(0); level != 0) level_ = level;
    host_.wake();
  }
}

DWORD TimingObject::beat() {
  const LONG64 rate = timing_->meterRate * LONG64{kMostReceivers};
  if (rate == 0) {
    beatStart_ = 0;
    return INFINITE;
  }
  if (beatStart_ == 0) {
    beatStart_ = counter();
    beats_ = 0;
  }
  const double elapsed = microseconds(counter() - beatStart_);
  const auto due = static_cast<LONG64>(elapsed * static_cast<double>(rate) / 1e6);
  const LONG64 atOnce = timing_->metersAtOnce;
  if (due >= beats_ + atOnce) {
    metersDue_ += static_cast<LONG>(due - std::exchange(beats_, due));
    host_.wake();
  }
  // Its own waits count as the panel's, so there are no more of them than events.
  const double next = static_cast<double>(beats_ + atOnce) * 1e6 / static_cast<double>(rate);
  return static_cast<DWORD>(std::max(1.0, std::ceil((next - elapsed) / 1000)));
}

}  // namespace kelvane::bench
