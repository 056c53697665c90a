#include "components/ambrel/win32/ambrel_object.h"

namespace kelvane::ambrel {

AmbrelObject::AmbrelObject(com::ObjectCount& count, com::TypeLibrary types,
                           std::filesystem::path dataFolder, std::filesystem::path userFolder)
    : AmbrelFace(std::move(types)),
      counted_(count),
      host_(*this),
      core_(
          std::move(dataFolder), std::move(userFolder), std::chrono::system_clock::now,
          [this] { host_.wake(); }, windows_) {
  core_.addListener(listener());
}

AmbrelObject::~AmbrelObject() { core_.removeListener(listener()); }

}  // namespace kelvane::ambrel
