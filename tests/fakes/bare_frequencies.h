#pragma once

#include "contract/components.h"
#include "contract/win32/table_macros.h"

namespace kelvane::fakes {

/// A frequency component that knows nothing: each operation answers its row's fallback.
class BareFrequencies : public FrequencyComponent {
 public:
#define ASK(name, Result, fallback, params, args) \
  Answer<Result> name params override {           \
    unused(0 COMMA_BEFORE args);                  \
    return Answer<Result>(fallback);              \
  }
#define TELL(name, params, args) \
  Outcome name params override { \
    unused(0 COMMA_BEFORE args); \
    return Outcome::Done;        \
  }
#define WALK(name, params, args)           \
  Answer<FrqRecord> name params override { \
    unused(0 COMMA_BEFORE args);           \
    return Answer<FrqRecord>(FrqRecord{}); \
  }
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK

 private:
  template <class... Args>
  static void unused(const Args&...) {}
};

}  // namespace kelvane::fakes
