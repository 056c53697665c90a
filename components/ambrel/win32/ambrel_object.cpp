#include "components/ambrel/win32/ambrel_object.h"

namespace kelvane::ambrel {

namespace {

/// How often the clock is looked at: stations come and go on the minute.
constexpr milliseconds kLookEvery{2000};

}  // namespace

AmbrelObject::AmbrelObject(com::ObjectCount& count, com::TypeLibrary types,
                           std::filesystem::path dataFolder, std::filesystem::path userFolder)
    : AmbrelFace(std::move(types)),
      counted_(count),
      host_(*this),
      core_(
          std::move(dataFolder), std::move(userFolder), std::chrono::system_clock::now,
          [this] { host_.wake(); }, windows_),
      lookDue_(std::chrono::steady_clock::now() + kLookEvery) {
  core_.addListener(listener());
}

AmbrelObject::~AmbrelObject() {
  windows_.closeAll();
  core_.removeListener(listener());
}

void AmbrelObject::deliverEvents() {
  core_.deliverEvents();
  windows_.follow();
}

void AmbrelObject::tick(Instant now) {
  if (now < lookDue_) return;
  lookDue_ = now + kLookEvery;
  core_.lookAtClock();
  windows_.follow();
}

}  // namespace kelvane::ambrel
