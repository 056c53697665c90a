#include "contract/win32/server/component_library.h"

#include "base/win32/known_folders.h"
#include "components/ambrel/win32/ambrel_object.h"

namespace {

using namespace kelvane;

com::Registration registration() {
  return {__uuidof(Ambrel),
          LIBID_AMBRELLib,
          __uuidof(IAmbrel),
          L"IAmbrel",
          __uuidof(_IAmbrelEvents),
          L"_IAmbrelEvents",
          L"Ambrel frequency component",
          L"Kelvane.Ambrel"};
}

ambrel::AmbrelObject* made(com::ObjectCount& count, com::TypeLibrary types) {
  return new ambrel::AmbrelObject(count, std::move(types), com::ownFile().parent_path() / "data",
                                  userDataFolder());
}

}  // namespace

COMPONENT_CLASS(Ambrel, IAmbrel, made)
COMPONENT_REGISTRATION(registration)
