// The built components as a program meets them: their files, and their objects in real life.
#include <cstring>
#include <set>

#include "base/win32/utf16.h"
#include "contract/link_state.h"
#include "contract/win32/com_frequency.h"
#include "contract/win32/com_receiver.h"
#include "contract/win32/component_files.h"
#include "contract/win32/event_connection.h"
#include "tests/wine/fake_components.h"

namespace kelvane::test {

namespace {

/// The names that a library offers, read from its file.
std::set<std::string> exportsOf(const wchar_t* file) {
  const HMODULE module =
      LoadLibraryExW((com::programFolder() / file).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
  const auto* base = reinterpret_cast<const char*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* header = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const auto& place = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* directory =
      reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place.VirtualAddress);
  const auto* names = reinterpret_cast<const DWORD*>(base + directory->AddressOfNames);
  std::set<std::string> result;
  for (DWORD i = 0; i < directory->NumberOfNames; ++i) result.insert(base + names[i]);
  FreeLibrary(module);
  return result;
}

std::string versionText(const wchar_t* file, const wchar_t* name) {
  const auto path = com::programFolder() / file;
  std::string data(GetFileVersionInfoSizeW(path.c_str(), nullptr), '\0');
  if (!GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(data.size()), data.data()))
    return {};
  wchar_t* text = nullptr;
  UINT size = 0;
  const std::wstring key = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
  if (!VerQueryValueW(data.data(), key.c_str(), reinterpret_cast<void**>(&text), &size)) return {};
  return std::filesystem::path(text).string();
}

/// A folder of the user's own for one instance, which the test leaves as it found it: absent.
class Instance {
 public:
  explicit Instance(std::string name) : name_(std::move(name)) { clear(); }
  ~Instance() { clear(); }
  const std::string& name() const { return name_; }
  std::filesystem::path folder() const {
    wchar_t base[MAX_PATH];
    GetEnvironmentVariableW(L"LOCALAPPDATA", base, MAX_PATH);
    return std::filesystem::path(base) / L"Kelvane" / wide(name_);
  }

 private:
  void clear() {
    std::error_code ignored;
    std::filesystem::remove_all(folder(), ignored);
  }
  const std::string name_;
};

bool has(const std::vector<std::string>& events, const std::string& event) {
  return std::find(events.begin(), events.end(), event) != events.end();
}

}  // namespace

class Components : public ComTest {};

TEST_F(Components, OfferTheFunctionsOfAComponentAndNothingElse) {
  const std::set<std::string> five = {"DllGetClassObject", "DllCanUnloadNow", "DllInstall",
                                      "DllRegisterServer", "DllUnregisterServer"};
  for (const wchar_t* file : {L"Sondrel.dll", L"Ambrel.dll"}) {
    EXPECT_EQ(exportsOf(file), five);
    EXPECT_EQ(versionText(file, L"ProductName"), "Kelvane");
    EXPECT_NE(versionText(file, L"FileVersion"), "");
  }
}

TEST_F(Components, StayLoadedAsLongAsSomethingOfThemIsUsed) {
  using CanUnload = HRESULT(STDAPICALLTYPE*)();
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const HMODULE module = LoadLibraryW((com::programFolder() / L"Ambrel.dll").c_str());
  const auto canUnload = reinterpret_cast<CanUnload>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  EXPECT_EQ(canUnload(), S_OK);
  com::ComPtr<IClassFactory> factory;
  EXPECT_EQ(getClassObject(__uuidof(Sondrel), IID_IClassFactory, factory.receiveAny()),
            CLASS_E_CLASSNOTAVAILABLE);
  ASSERT_EQ(getClassObject(__uuidof(Ambrel), IID_IClassFactory, factory.receiveAny()), S_OK);
  EXPECT_EQ(canUnload(), S_FALSE);
  com::ComPtr<IAmbrel> object;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, object.receiveAny()),
            CLASS_E_NOAGGREGATION);
  ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(IAmbrel), object.receiveAny()), S_OK);
  factory->LockServer(TRUE);
  factory = {};
  object = {};
  EXPECT_EQ(canUnload(), S_FALSE) << "locked";
  ASSERT_EQ(getClassObject(__uuidof(Ambrel), IID_IClassFactory, factory.receiveAny()), S_OK);
  factory->LockServer(FALSE);
  factory = {};
  EXPECT_EQ(canUnload(), S_OK);
  FreeLibrary(module);
}

TEST_F(Components, TheReceiversComeUpAndReportFromTheMessageLoopAlone) {
  const Instance instance("Wine contract t\u00e9st");
  const auto opened = com::openReceiverComponent();
  ASSERT_TRUE(opened) << opened.reason;
  com::ComReceiver receivers(opened.object);
  HeardReceivers heard;
  const com::EventConnection connection(opened.object.get(), heard);
  EXPECT_EQ(receivers.OpenRxConfig(instance.name(), 0).value(), 4);
  const std::string up = callText("RxConnState", Index(1), static_cast<Long>(LinkState::Up));
  EXPECT_TRUE(heard.events.empty()) << "nothing from inside a call";
  EXPECT_TRUE(pumpUntil([&] { return has(heard.events, up); }));

  const Hz target = receivers.GetRxFrqMin(1).value() + 1'000'000;
  heard.events.clear();
  EXPECT_EQ(receivers.SetRxFrequency(1, false, target), Outcome::Done);
  EXPECT_EQ(receivers.GetRxFrequency(1, kTuned).value(), target);
  const std::string tuned = callText("RxFrqUpdated", Index(1), target, 0);
  EXPECT_FALSE(has(heard.events, tuned));
  EXPECT_TRUE(pumpUntil([&] { return has(heard.events, tuned); }));
  EXPECT_EQ(receivers.SetRxFrequency(9, false, target), Outcome::Failed);
  EXPECT_TRUE(std::filesystem::exists(instance.folder()));
}

TEST_F(Components, TheReceiverComponentMayEndWhileItsLinksAreBusy) {
  const Instance instance("Wine contract end");
  auto opened = com::openReceiverComponent();
  ASSERT_TRUE(opened);
  HeardReceivers heard;
  auto connection = std::make_unique<com::EventConnection>(opened.object.get(), heard);
  com::ComReceiver(opened.object).OpenRxConfig(instance.name(), 0);
  heard.then = [&] {  // in the midst of its own events
    connection.reset();
    opened.object = {};
  };
  EXPECT_TRUE(pumpUntil([&] { return !heard.events.empty(); }));
  pump();
  EXPECT_EQ(heard.events.size(), 1u);
}

TEST_F(Components, TheFrequencyComponentReadsTheDataBesideIt) {
  const Instance instance("Wine contract data");
  const auto bandAt = [&](const com::OpenedComponent& opened) {
    if (!opened) return opened.reason;
    com::ComFrequency frequencies(opened.object);
    EXPECT_EQ(frequencies.OpenFrqConfig(instance.name()), Outcome::Done);
    EXPECT_EQ(frequencies.InitFrqPlan(0), Outcome::Done);
    EXPECT_EQ(frequencies.SetFrqFrequency(7'050'000).value(), true);
    return frequencies.GetFrqBandName().value();
  };
  const std::string shipped = bandAt(com::openFrequencyComponent());
  ASSERT_NE(shipped, "");

  const TemporaryFolder elsewhere;
  std::filesystem::copy(com::programFolder() / L"data", elsewhere / L"data");
  std::filesystem::copy(com::programFolder() / L"Ambrel.dll", elsewhere / L"Ambrel.dll");
  std::string plan = fileContent(elsewhere / L"data\\bandplan-r1.txt");
  for (auto at = plan.find(shipped); at != plan.npos; at = plan.find(shipped, at + 1)) {
    plan.replace(at, shipped.size(), "Renamed");
  }
  elsewhere.write(L"data\\bandplan-r1.txt", plan);
  EXPECT_EQ(bandAt(com::openComponent(elsewhere.path(), L"Ambrel.dll", __uuidof(Ambrel))),
            "Renamed");
}

}  // namespace kelvane::test
