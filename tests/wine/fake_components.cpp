#include "tests/wine/fake_components.h"

#include "contract/win32/activation.h"

namespace kelvane::test {

com::TypeLibrary typesOf(const wchar_t* file, REFIID operations, REFCLSID coclass) {
  com::TypeLibrary types;
  const auto path = com::programFolder() / file;
  if (SUCCEEDED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, types.library.receive()))) {
    types.library->GetTypeInfoOfGuid(operations, types.operations.receive());
    types.library->GetTypeInfoOfGuid(coclass, types.coclass.receive());
  }
  if (!types.operations || !types.coclass) throw std::runtime_error("no type library in the DLL");
  return types;
}

FakeSondrel::FakeSondrel(bool* ended)
    : SondrelFace(typesOf(L"Sondrel.dll", __uuidof(ISondrel), __uuidof(Sondrel))), ended_(ended) {}

FakeSondrel::~FakeSondrel() {
  if (ended_) *ended_ = true;
}

FakeAmbrel::FakeAmbrel()
    : AmbrelFace(typesOf(L"Ambrel.dll", __uuidof(IAmbrel), __uuidof(Ambrel))) {}

}  // namespace kelvane::test
