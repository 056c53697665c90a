// Registering the components with the system and taking it back.
#include <algorithm>
#include <memory>

#include "base/win32/utf16.h"
#include "contract/Ambrel.h"
#include "contract/Sondrel.h"
#include "contract/win32/activation.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

using com::ComPtr;

/// One component's library, loaded for the test.
class Library {
 public:
  explicit Library(const std::wstring& name)
      : module_(LoadLibraryW((com::programFolder() / name).c_str())) {}
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { FreeLibrary(module_); }

  HRESULT call(const char* function) const {
    const auto address = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(module_, function)));
    return address ? address() : E_NOTIMPL;
  }
  HRESULT install(const wchar_t* words) const {
    const auto address = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(BOOL, PCWSTR)>(
        reinterpret_cast<void*>(GetProcAddress(module_, "DllInstall")));
    return address ? address(TRUE, words) : E_NOTIMPL;
  }

 private:
  HMODULE module_;
};

void collect(HKEY root, const std::wstring& key, std::vector<std::wstring>& names) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return;
  wchar_t name[256];
  for (DWORD i = 0, size = 256; RegEnumKeyExW(opened, i, name, &size, 0, 0, 0, 0) == ERROR_SUCCESS;
       ++i, size = 256) {
    names.push_back((root == HKEY_LOCAL_MACHINE ? L"machine " : L"user ") + key + L"\\" + name);
  }
  RegCloseKey(opened);
}

/// Every class, interface, type library and program id that the system knows of.
std::vector<std::wstring> registered() {
  std::vector<std::wstring> names;
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    for (const wchar_t* part : {L"", L"\\CLSID", L"\\Interface", L"\\TypeLib"}) {
      collect(root, std::wstring(L"Software\\Classes") + part, names);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

class Registering : public ComTest {};

TEST_F(Registering, MakesBothComponentsKnownAndUnregisteringLeavesNoTrace) {
  const auto before = registered();
  const TemporaryFolder elsewhere;
  const struct {
    const wchar_t* file;
    CLSID component;
    IID operations;
    const wchar_t* programId;
  } components[] = {
      {L"Sondrel.dll", __uuidof(Sondrel), __uuidof(ISondrel), L"Kelvane.Sondrel"},
      {L"Ambrel.dll", __uuidof(Ambrel), __uuidof(IAmbrel), L"Kelvane.Ambrel"},
  };
  for (const auto& c : components) {
    const Library library(c.file);
    ASSERT_EQ(library.call("DllRegisterServer"), S_OK);
    EXPECT_EQ(library.call("DllRegisterServer"), S_OK) << "again";
    CLSID found{};
    {
      const ClassesForMachine heeded;
      EXPECT_EQ(CLSIDFromProgID(c.programId, &found), S_OK);
      EXPECT_TRUE(found == c.component);
      EXPECT_TRUE(com::openComponent(elsewhere.path(), c.file, found)) << "the registered one";
      std::ofstream(elsewhere / c.file) << "junk";
      EXPECT_FALSE(com::openComponent(elsewhere.path(), c.file, found))
          << "a damaged file is not passed over for the registered component";
    }
    EXPECT_EQ(library.call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(library.call("DllUnregisterServer"), S_OK) << "again";
    EXPECT_HRESULT_FAILED(CLSIDFromProgID(c.programId, &found));
  }
  EXPECT_EQ(registered(), before);
}

TEST_F(Registering, IsForTheUserAloneWhereOthersMayChangeTheFile) {
  const auto before = registered();
  const Library library(L"Sondrel.dll");
  EXPECT_EQ(library.install(L"machine"), E_ACCESSDENIED) << "the build's folder is somebody's own";
  EXPECT_EQ(library.install(L"everybody"), E_INVALIDARG);
  EXPECT_EQ(registered(), before);
  ASSERT_EQ(library.install(L""), S_OK);
  for (const std::wstring& name : registered()) {
    const bool isNew = std::find(before.begin(), before.end(), name) == before.end();
    EXPECT_TRUE(!isNew || name.starts_with(L"user ")) << narrow(name);
  }
  EXPECT_EQ(library.call("DllUnregisterServer"), S_OK);
}

TEST_F(Registering, LetsToolsFindTheTypeLibrary) {
  const Library library(L"Sondrel.dll");
  ASSERT_EQ(library.call("DllRegisterServer"), S_OK);
  auto heeded = std::make_unique<ClassesForMachine>();
  const GUID id = [] {
    ComPtr<ITypeLib> own;
    LoadTypeLibEx((com::programFolder() / L"Sondrel.dll").c_str(), REGKIND_NONE, own.receive());
    TLIBATTR* attributes = nullptr;
    own->GetLibAttr(&attributes);
    const GUID guid = attributes->guid;
    own->ReleaseTLibAttr(attributes);
    return guid;
  }();
  ComPtr<ITypeLib> types;
  EXPECT_EQ(LoadRegTypeLib(id, 1, 0, LOCALE_NEUTRAL, types.receive()), S_OK);
  heeded.reset();
  EXPECT_EQ(library.call("DllUnregisterServer"), S_OK);
  EXPECT_HRESULT_FAILED(LoadRegTypeLib(id, 1, 0, LOCALE_NEUTRAL, types.receive()));
}

}  // namespace kelvane::test
