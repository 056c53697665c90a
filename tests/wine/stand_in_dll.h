#pragma once

#include "contract/win32/server/component_library.h"
#include "contract/win32/server/sondrel_face.h"

namespace kelvane::test {

template <class Object>
Object* makeStandIn(com::ObjectCount& count, com::TypeLibrary types) {
  return new Object(count, std::move(types));
}

}  // namespace kelvane::test

/// The functions of a library whose receiver component is an Object.
#define STAND_IN_SONDREL(Object) \
  COMPONENT_CLASS(Sondrel, ISondrel, kelvane::test::makeStandIn<Object>)
