#pragma once

#include "base/field_cutter.h"

namespace kelvane::ambrel {

/// Walks the lists whose fields are parted by ";".
using LineCutter = FieldCutter<';', LineEnd::Feed>;

}  // namespace kelvane::ambrel
