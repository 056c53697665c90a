#include "contract/win32/server/component_library.h"

#include "base/win32/known_folders.h"
#include "components/sondrel/win32/sondrel_object.h"

namespace {

using namespace kelvane;

com::Registration registration() {
  return {__uuidof(Sondrel),
          LIBID_SONDRELLib,
          __uuidof(ISondrel),
          L"ISondrel",
          __uuidof(_ISondrelEvents),
          L"_ISondrelEvents",
          L"Sondrel receiver component",
          L"Kelvane.Sondrel"};
}

sondrel::SondrelObject* made(com::ObjectCount& count, com::TypeLibrary types) {
  return new sondrel::SondrelObject(count, std::move(types), userDataFolder());
}

}  // namespace

COMPONENT_CLASS(Sondrel, ISondrel, made)
COMPONENT_REGISTRATION(registration)
