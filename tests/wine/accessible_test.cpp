#include <windows.h>

#include <initguid.h>
#include <objbase.h>
#include <oleacc.h>

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "win32/help_window.h"
#include "win32/panel_window.h"
#include "win32/registry_store.h"

namespace kelvane::win32 {
namespace {

struct Spoken {
  std::string name;
  long role = 0;
};

/// Stands where the system keeps what windows say of themselves to screen readers, and remembers
/// it.
class NotedSpeech : public IAccPropServices, public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (iid == IID_IClassFactory)
      *object = static_cast<IClassFactory*>(this);
    else
      *object = static_cast<IAccPropServices*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    return QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(WINBOOL) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD, DWORD, MSAAPROPID property,
                                           LPCWSTR text) override {
    if (property == PROPID_ACC_NAME) spoken[window].name = narrow(text);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetHwndProp(HWND window, DWORD, DWORD, MSAAPROPID property,
                                        VARIANT value) override {
    if (property == PROPID_ACC_ROLE) spoken[window].role = value.lVal;
    return S_OK;
  }

  // What the program has no use for.
  HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int,
                                          IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int,
                                              IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND, DWORD, DWORD, const MSAAPROPID*, int) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*,
                                                        DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int,
                                               IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*,
                                                         DWORD*) override {
    return E_NOTIMPL;
  }

  std::map<HWND, Spoken> spoken;
};

std::string classOf(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  return narrow(name);
}

/// Whether screen readers know by the class alone what it is.
bool knownToReaders(const std::string& windowClass) {
  for (const char* known : {"Button", "Static", "Edit", "ComboBox", "ListBox", "SysTabControl32",
                            "SysListView32", "RICHEDIT50W"}) {
    if (lstrcmpiA(windowClass.c_str(), known) == 0) return true;
  }
  return false;
}

class Accessible : public testing::Test {
 protected:
  void SetUp() override {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ASSERT_EQ(CoRegisterClassObject(CLSID_AccPropServices, static_cast<IClassFactory*>(&speech_),
                                    CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registered_),
              S_OK);
  }
  void TearDown() override { CoRevokeClassObject(registered_); }

  /// Looks at every control of a window; answers their number.
  int checkControls(HWND parent) {
    int seen = 0;
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      ++seen;
      const int id = GetDlgCtrlID(child);
      const Spoken& said = speech_.spoken[child];
      // A button's caption is its name.
      const bool captioned = said.role == ROLE_SYSTEM_PUSHBUTTON || classOf(child) == "Button";
      EXPECT_TRUE(!said.name.empty() || captioned || GetWindowTextLengthW(child) > 0)
          << "control " << id << " of class " << classOf(child) << " has no name";
      EXPECT_TRUE(said.role != 0 || knownToReaders(classOf(child)))
          << "control " << id << " of class " << classOf(child) << " has no role";
    }
    return seen;
  }

  NotedSpeech speech_;
  DWORD registered_ = 0;
};

TEST_F(Accessible, EveryControlOfThePanelAndItsCardHasANameAndARole) {
  PanelWindow panel(GetModuleHandleW(nullptr));
  panel.explain();
  EXPECT_GE(checkControls(panel.window()), 50);
  RegistryStore settings("TestAccessible");
  MiniHelp help(settings, [] { return std::string(); });
  HelpWindow card(panel.window(), help);
  card.show();
  const HWND window = FindWindowW(L"KelvaneMiniHelp", nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(checkControls(window), 2);
}

}  // namespace
}  // namespace kelvane::win32
