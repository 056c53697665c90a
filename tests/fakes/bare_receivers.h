#pragma once

#include "contract/components.h"
#include "contract/win32/table_macros.h"

namespace kelvane::fakes {

/// A receiver component that has nothing: each operation answers its row's fallback.
class BareReceivers : public ReceiverComponent {
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
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL

 private:
  template <class... Args>
  static void unused(const Args&...) {}
};

}  // namespace kelvane::fakes
