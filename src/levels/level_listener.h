#pragma once

#include "base/wall_time.h"
#include "contract/types.h"

namespace kelvane {

/// Hears each level, with what belongs to it, as it comes: who writes levels to a file does.
class LevelListener {
 public:
  virtual ~LevelListener() = default;
  virtual void heard(Index rx, WallTime utc, Hz frequency, Long level) = 0;
};

}  // namespace kelvane
