// What somebody else may have put in the way.
#include <array>
#include <climits>
#include <future>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <vector>

#include "base/child_process.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "base/win32/known_folders.h"
#include "base/win32/utf16.h"
#include "contract/Sondrel.h"
#include "contract/win32/activation.h"
#include "contract/win32/event_sink.h"
#include "contract/win32/variant.h"
#include "gui/win32/dialog_thread.h"
#include "gui/win32/window_base.h"
#include "tests/fakes/recording_listener.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

/// A file of a program, read as the system's loader does.
class ProgramFile {
 public:
  explicit ProgramFile(const std::filesystem::path& file) : bytes_(fileContent(file)) {}

  /// The libraries that are loaded with it, in upper case.
  std::set<std::string> imports() const {
    std::set<std::string> names;
    const auto& head = at<IMAGE_NT_HEADERS64>(at<IMAGE_DOS_HEADER>(0).e_lfanew);
    const auto& table = head.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (DWORD place = offset(table.VirtualAddress);; place += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
      const auto& library = at<IMAGE_IMPORT_DESCRIPTOR>(place);
      if (library.Name == 0) return names;
      names.insert(upper(&at<char>(offset(library.Name))));
    }
  }

 private:
  template <class T>
  const T& at(std::size_t place) const {
    return *reinterpret_cast<const T*>(bytes_.data() + place);
  }
  /// Where in the file lies what is at this address in memory.
  DWORD offset(DWORD address) const {
    const auto& head = at<IMAGE_NT_HEADERS64>(at<IMAGE_DOS_HEADER>(0).e_lfanew);
    const auto* section = IMAGE_FIRST_SECTION(&head);
    while (address < section->VirtualAddress ||
           address >= section->VirtualAddress + section->SizeOfRawData)
      ++section;
    return address - section->VirtualAddress + section->PointerToRawData;
  }

  std::string bytes_;
};

/// Any argument that a script could hand over, the odd ones more often than not.
class OddArgument : public com::Variant {
 public:
  OddArgument(std::mt19937& random, LONG& place) {
    constexpr double kReals[] = {0,   -1,           1e300,
                                 0.5, 2147483647.5, std::numeric_limits<double>::quiet_NaN()};
    constexpr Long kWholes[] = {0, 1, 7, 8, -1, -32769, 40000, 7050000, LONG_MAX, LONG_MIN};
    const auto one = [&](const auto& values) { return values[random() % std::size(values)]; };
    switch (random() % 9) {
      case 0:
        vt = VT_R8;
        dblVal = one(kReals);
        break;
      case 1:
        vt = VT_BSTR;
        bstrVal = com::newBstr(std::string(random() % 300, 'x'));
        break;
      case 2:
        vt = VT_I4 | VT_BYREF;
        plVal = &(place = one(kWholes));
        break;
      case 3:
        vt = static_cast<VARTYPE>(random() % 2 ? VT_NULL : VT_EMPTY);
        break;
      case 4:
        vt = VT_ERROR;
        scode = DISP_E_PARAMNOTFOUND;
        break;
      case 5:
        vt = VT_BSTR;
        bstrVal = nullptr;
        break;
      case 6:
        vt = VT_UI8;
        ullVal = ~0ull >> random() % 64;
        break;
      default:
        vt = VT_I4;
        lVal = one(kWholes);
    }
  }
};

/// Hands each operation or event of an object arguments of every kind and number.
void handOverAnything(IDispatch& object, DISPID most, const std::set<DISPID>& except) {
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    const DISPID id = static_cast<DISPID>(random() % static_cast<unsigned>(most + 3));
    if (except.contains(id)) continue;
    std::array<LONG, 10> places{};
    std::vector<std::unique_ptr<OddArgument>> given;
    std::array<VARIANT, 10> row{};
    const std::size_t count = random() % (row.size() + 1);
    for (std::size_t at = 0; at < count; ++at) {
      given.push_back(std::make_unique<OddArgument>(random, places[at]));
      row[at] = *given.back();
    }
    DISPPARAMS parameters{row.data(), nullptr, static_cast<UINT>(count), 0};
    com::Variant result;
    object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result, nullptr,
                  nullptr);
  }
}

DISPID idOf(IDispatch& object, const wchar_t* name) {
  LPOLESTR names[] = {const_cast<wchar_t*>(name)};
  DISPID id = DISPID_UNKNOWN;
  object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

/// What an operation without arguments answers as a text.
std::string askText(IDispatch& object, const wchar_t* name) {
  com::Variant answer;
  DISPPARAMS none{};
  object.Invoke(idOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &answer,
                nullptr, nullptr);
  return com::valueOf<std::string>(answer).value_or("no text");
}

void openInstance(IDispatch& object, const std::string& instance) {
  com::Variant mode(std::int32_t{0}), name(instance);
  VARIANT lastFirst[] = {mode, name};
  DISPPARAMS arguments{lastFirst, nullptr, 2, 0};
  object.Invoke(idOf(object, L"OpenRxConfig"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                &arguments, nullptr, nullptr, nullptr);
}

/// Windows that fail at whatever the operator asks of them, at a timer and at a message of ours:
/// one of our own, a control that we took over and one that we only listen to.
class Failing : private win32::WindowBase<Failing> {
 public:
  Failing() {
    WNDCLASSW type{};
    type.lpszClassName = L"KelvaneFailing";
    registerWindows(type);
    windows[0] = make(L"KelvaneFailing", this);
    windows[1] = make(L"STATIC", nullptr);
    takeOver(windows[1], this);
    windows[2] = make(L"STATIC", nullptr);
    watch<&Failing::heard>(windows[2], this);
  }
  ~Failing() {
    for (const HWND window : windows) DestroyWindow(window);
  }

  std::array<HWND, 3> windows{};

 private:
  friend win32::WindowBase<Failing>;
  static HWND make(const wchar_t* type, Failing* self) {
    return CreateWindowExW(0, type, L"words", WS_OVERLAPPED, 0, 0, 9, 9, nullptr, nullptr, nullptr,
                           self);
  }
  bool handle(UINT message, WPARAM, LPARAM, LRESULT&) {
    if (message == WM_COMMAND || message == WM_TIMER || message == WM_APP) throw std::bad_alloc();
    return false;
  }
  bool heard(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    return handle(message, wParam, lParam, result);
  }
};

int faultsNoted() {
  const std::string noted = notedFaults();
  const auto at = noted.find("answering a window's message: there is not enough memory");
  if (at == noted.npos) return 0;
  const auto line = noted.substr(at, noted.find('\n', at) - at);
  const auto times = line.rfind('(');
  return times == line.npos ? 1 : std::stoi(line.substr(times + 1));
}

/// Closes the box that tells of a failure; answers its words.
std::string closeBox() {
  HWND box = nullptr;
  for (int tries = 0; tries < 500 && !box; ++tries, Sleep(10))
    box = FindWindowW(L"#32770", L"Kelvane");
  constexpr int kMessageText = 0xffff;
  wchar_t words[200] = L"";
  for (int tries = 0; box && tries < 500 && !*words; ++tries, Sleep(10))
    GetDlgItemTextW(box, kMessageText, words, 200);
  PostMessageW(box, WM_CLOSE, 0, 0);
  return narrow(words);
}

}  // namespace

class HostileScript : public ComTest {};

TEST_F(HostileScript, MayHandOverWhatItLikes) {
  const com::OpenedComponent sondrel = com::openComponent(L"Sondrel.dll", __uuidof(Sondrel));
  ASSERT_TRUE(sondrel);
  IDispatch& object = *sondrel.object.get();
  const std::string instance = "Kelvane hostile " + std::to_string(GetCurrentProcessId());
  openInstance(object, instance);
  // Those that open a file or a window are left alone.
  std::set<DISPID> except;
  for (const wchar_t* name : {L"OpenRxConfig", L"ShowRxSettings", L"SetRxOwner"})
    except.insert(idOf(object, name));
  handOverAnything(object, idOf(object, L"GetRxFaults"), except);
  EXPECT_EQ(askText(object, L"GetRxFaults"), "") << "all were refused";
  std::error_code ignored;
  std::filesystem::remove_all(userDataFolder() / wide(instance), ignored);
  fakes::RecordingListener heard;
  const com::ComPtr<com::EventSink> sink(com::newSink(heard));
  handOverAnything(*sink.get(), 20, {});
  EXPECT_GT(heard.heard.size(), 10u) << "some of them fit";
}

TEST(Hostile, WhatFailsInAWindowIsToldAndGoesNoFurther) {
  const Failing failing;
  const int before = faultsNoted();
  for (const HWND window : failing.windows) {
    SendMessageW(window, WM_APP, 0, 0);
    SendMessageW(window, WM_TIMER, 1, 0);
    wchar_t text[9] = L"";
    GetWindowTextW(window, text, 9);
    EXPECT_EQ(narrow(text), "words") << "what it leaves goes on as ever";
  }
  EXPECT_EQ(faultsNoted() - before, 6);
  EXPECT_EQ(FindWindowW(L"#32770", L"Kelvane"), nullptr) << "nobody asked for anything";
  for (const HWND window : failing.windows) {
    auto words = std::async(std::launch::async, closeBox);
    SendMessageW(window, WM_COMMAND, 1, 0);
    EXPECT_EQ(words.get(), "That did not succeed: there is not enough memory.");
  }
}

TEST(Hostile, AThreadOfADialogThatFailsIsHeardOfAndEnds) {
  std::string why;
  DialogThread thread;
  thread.start([] { throw std::bad_alloc(); }, [&](const std::string& words) { why = words; });
  thread.end();
  EXPECT_EQ(why, "there is not enough memory");
  EXPECT_FALSE(thread.running());
}

TEST(Hostile, NothingThatTheProgramIsLoadedWithIsLookedForBesideIt) {
  // The libraries that Windows itself keeps one copy of for everybody.
  const std::set<std::string> known{"ADVAPI32.DLL", "GDI32.DLL",  "KERNEL32.DLL",
                                    "MSVCRT.DLL",   "OLE32.DLL",  "OLEAUT32.DLL",
                                    "SHELL32.DLL",  "USER32.DLL", "WS2_32.DLL"};
  for (const wchar_t* name : {L"Kelvane.exe", L"Sondrel.dll", L"Ambrel.dll", L"DigitServer.exe"}) {
    const auto imports = ProgramFile(com::programFolder() / name).imports();
    EXPECT_TRUE(imports.contains("KERNEL32.DLL"));
    for (const std::string& library : imports)
      EXPECT_TRUE(known.contains(library)) << narrow(name) << " is loaded with " << library;
  }
}

// Windows takes such a name, and Wine makes none: so the name alone.
TEST(Hostile, AFileNameWithHalfAPairOfLettersHasAText) {
  EXPECT_EQ(pathText(L"list.txt.\xD800.unfinished"), "list.txt.\xEF\xBF\xBD.unfinished");
  EXPECT_EQ(pathText(L"\xDC00\xD800"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(pathText(L"gr\u00fc\xD83D\xDE00"), "gr\xC3\xBC\xF0\x9F\x98\x80");
}

TEST(Hostile, AProgramAtAShorterNameIsNotStartedInstead) {
  const TemporaryFolder folder;
  const std::wstring system = [] {
    wchar_t name[MAX_PATH];
    GetSystemDirectoryW(name, MAX_PATH);
    return std::wstring(name);
  }();
  std::filesystem::create_directory(folder / L"Pro gram");
  const auto real = folder / L"Pro gram" / L"cmd.exe";
  std::filesystem::copy_file(system + L"\\cmd.exe", real);
  folder.write(L"Pro.exe", "not a program");
  const std::string words = narrow(real.wstring()) + " /c exit";
  ChildProcess child;
  EXPECT_EQ(child.start(words).reason(), "") << "the one that is meant, without quotes";
  const std::string without = narrow((folder / L"Pro gram" / L"cmd").wstring());
  EXPECT_NE(child.start(without + " /c exit").reason().find("in quotes"), std::string::npos);
  EXPECT_EQ(child.start("\"" + without + "\" /c exit").reason(), "");
  EXPECT_EQ(child.start("cmd /c exit").reason(), "") << "by the search path";
  EXPECT_EQ(child.start("no-such-program -m 1").reason(), "There is no program no-such-program.");
}

}  // namespace kelvane::test
