#include "components/sondrel/win32/sondrel_object.h"

namespace kelvane::sondrel {

SondrelObject::SondrelObject(com::ObjectCount& count, com::TypeLibrary types,
                             std::filesystem::path dataFolder)
    : SondrelFace(std::move(types)),
      counted_(count),
      host_(*this),
      windows_([this]() -> SondrelCore& { return core_; }),
      core_(
          std::move(dataFolder), std::chrono::steady_clock::now, [this] { host_.wake(); },
          windows_) {
  core_.addListener(listener());
}

SondrelObject::~SondrelObject() {
  windows_.closeAll();
  core_.removeListener(listener());
}

}  // namespace kelvane::sondrel
