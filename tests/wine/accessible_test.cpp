#include <windows.h>

#include <commctrl.h>
#include <initguid.h>
#include <objbase.h>
#include <oleacc.h>

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"
#include "win32/message_boxes.h"
#include "win32/registry_store.h"
#include "win32/run_panel.h"

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
    const std::lock_guard lock(mutex_);
    if (property == PROPID_ACC_NAME) spoken_[window].name = narrow(text);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetHwndProp(HWND window, DWORD, DWORD, MSAAPROPID property,
                                        VARIANT value) override {
    const std::lock_guard lock(mutex_);
    if (property == PROPID_ACC_ROLE) spoken_[window].role = value.lVal;
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

  Spoken of(HWND window) {
    const std::lock_guard lock(mutex_);
    return spoken_[window];
  }

 private:
  std::mutex mutex_;
  std::map<HWND, Spoken> spoken_;
};

std::string classOf(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  return narrow(name);
}

/// Whether screen readers know by the class alone what it is.
bool knownToReaders(const std::string& windowClass) {
  for (const char* known : {"Button", "Static", "Edit", "ComboBox", "ListBox", "SysTabControl32",
                            "SysListView32", "SysHeader32", "RICHEDIT50W"}) {
    if (lstrcmpiA(windowClass.c_str(), known) == 0) return true;
  }
  return false;
}

/// Whether the text of such a window is what screen readers say of it.
bool saysItsText(const std::string& windowClass) {
  return windowClass == "Button" || windowClass == "Static" || windowClass == "KelvaneGrid";
}

/// The windows that a window is made of, without what the system's own controls consist of.
BOOL CALLBACK gather(HWND window, LPARAM found) {
  const HWND parent = GetParent(window);
  const bool systems = parent != GetAncestor(window, GA_ROOT) && classOf(parent) != "KelvaneGrid";
  RECT area{};
  GetWindowRect(window, &area);
  if (!systems && IsWindowVisible(window) && area.right > area.left)
    reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
  return TRUE;
}

/// Runs the whole panel, with an operator in a thread of his own who opens one window after the
/// other and looks at what it says of itself.
class Accessible : public testing::Test {
 protected:
  void SetUp() override {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ASSERT_EQ(CoRegisterClassObject(CLSID_AccPropServices, static_cast<IClassFactory*>(&speech_),
                                    CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registered_),
              S_OK);
  }
  void TearDown() override { CoRevokeClassObject(registered_); }

  static HWND shown(const wchar_t* windowClass) {
    HWND window = nullptr;
    wine::eventually([&] {
      window = FindWindowW(windowClass, nullptr);
      return window && IsWindowVisible(window);
    });
    EXPECT_NE(window, nullptr) << narrow(windowClass);
    return window;
  }

  /// Looks at every control of a window that is shown; answers their number.
  int walk(const wchar_t* windowClass) {
    std::vector<HWND> controls;
    EnumChildWindows(shown(windowClass), gather, reinterpret_cast<LPARAM>(&controls));
    for (const HWND control : controls) check(narrow(windowClass), control);
    return static_cast<int>(controls.size());
  }

  void check(const std::string& window, HWND control) {
    const std::string windowClass = classOf(control);
    const Spoken said = speech_.of(control);
    const bool text = saysItsText(windowClass) && GetWindowTextLengthW(control) > 0;
    const bool line = said.role == 0 || said.role == ROLE_SYSTEM_STATICTEXT;
    const bool silent = windowClass == "Static" && line && GetWindowTextLengthW(control) == 0;
    EXPECT_TRUE(!said.name.empty() || text || silent)
        << window << ": control " << GetDlgCtrlID(control) << " of class " << windowClass
        << " has no name";
    EXPECT_TRUE(said.role != 0 || knownToReaders(windowClass))
        << window << ": control " << GetDlgCtrlID(control) << " of class " << windowClass
        << " has no role";
  }

  static void close(const wchar_t* windowClass) {
    const HWND window = shown(windowClass);
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(wine::eventually([&] { return !IsWindow(window) || !IsWindowVisible(window); }))
        << narrow(windowClass) << " stays";
  }

  void walkBesides(HWND panel) {
    struct Window {
      const wchar_t* windowClass;
      int least;
    };
    constexpr Window kWindows[] = {
        {L"KelvaneChannel", 10},  {L"KelvaneLog", 9},      {L"KelvaneKnownList", 10},
        {L"KelvaneDataView", 7},  {L"KelvaneSource", 13},  {L"KelvaneMiniHelp", 2},
        {L"KelvaneStations", 18}, {L"KelvaneOverview", 3}, {L"KelvaneTraces", 10}};
    for (int i = 0; i < 9; ++i) {
      const HWND button = GetDlgItem(panel, id::Opener + i);
      EXPECT_TRUE(wine::eventually([&] { return IsWindowEnabled(button) != 0; })) << i;
      PostMessageW(button, BM_CLICK, 0, 0);
      EXPECT_GE(walk(kWindows[i].windowClass), kWindows[i].least);
      if (i == 1) walkWhileEditing();
      close(kWindows[i].windowClass);
    }
  }

  void walkWhileEditing() {
    const HWND log = shown(L"KelvaneLog"), grid = GetDlgItem(log, id::PadGrd);
    EXPECT_TRUE(wine::eventually([&] { return IsWindowEnabled(GetDlgItem(log, IDOK)) != 0; }));
    PostMessageW(GetDlgItem(log, id::PadInsert), BM_CLICK, 0, 0);
    const auto editing = [grid] {
      PostMessageW(grid, WM_KEYDOWN, VK_F2, 0);
      const HWND entry = FindWindowExW(grid, nullptr, L"Edit", nullptr);
      return entry && IsWindowVisible(entry);
    };
    EXPECT_TRUE(wine::eventually(editing));
    walk(L"KelvaneLog");
  }

  void walkOptions(HWND panel) {
    PostMessageW(GetDlgItem(panel, id::ConfigButton), BM_CLICK, 0, 0);
    EXPECT_GE(walk(L"KelvaneConfig"), 12);
    const HWND tabs = GetDlgItem(shown(L"KelvaneConfig"), id::All);
    PostMessageW(tabs, TCM_SETCURFOCUS, 0, 0);
    EXPECT_GE(walk(L"KelvaneDrivers"), 20);
    close(L"KelvaneDrivers");
    PostMessageW(tabs, TCM_SETCURFOCUS, 1, 0);
    EXPECT_GE(walk(L"KelvaneReceiver"), 25);
    close(L"KelvaneReceiver");
    close(L"KelvaneConfig");
  }

  /// Everything, and at last the panel itself is closed.
  void lookAround() {
    const HWND panel = shown(L"KelvaneMAin");
    // Names come when the window is on the screen already.
    wine::eventually([&] { return !speech_.of(GetDlgItem(panel, id::FrqFrame)).name.empty(); });
    EXPECT_GE(walk(L"KelvaneMAin"), 45);
    walkBesides(panel);
    walkOptions(panel);
    PostMessageW(panel, WM_CLOSE, 0, 0);
  }

  NotedSpeech speech_;
  DWORD registered_ = 0;
};

TEST_F(Accessible, EveryControlOfEveryWindowHasANameAndARole) {
  const wine::Instance instance(L"TestAccessible");
  RegistryStore settings("TestAccessible");
  std::filesystem::create_directories(instance.folder());
  std::filesystem::current_path(instance.folder());  // the log lies there
  SystemMessageBoxes boxes(nullptr);
  std::thread operating([this] { lookAround(); });
  SolePanel sole("TestAccessible");
  ASSERT_TRUE(sole.claim());
  EXPECT_EQ(runPanel(GetModuleHandleW(nullptr), "TestAccessible", settings, boxes, sole), 0);
  operating.join();
  std::filesystem::current_path(wine::programFolder());
}

}  // namespace
}  // namespace kelvane::win32
