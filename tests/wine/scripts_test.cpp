// The guide's page on scripts, kept to its word: registered as it says, its calls run by the
// system's script host, its events found as script languages find them.
#include <map>
#include <regex>
#include <sstream>

#include "base/win32/utf16.h"
#include "contract/win32/activation.h"
#include "contract/win32/com_receiver.h"
#include "contract/win32/event_sink.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

using com::ComPtr;

constexpr wchar_t kProgramId[] = L"Kelvane.Sondrel";
constexpr char kInstance[] = "TestScripts";
constexpr wchar_t kWaiting[] = L"KelvaneScriptWaits";

std::string guidesPage() {
  return fileContent(std::filesystem::path(KELVANE_GUIDE) / "scripting.md");
}

/// What stands between the page's first lines "```LANGUAGE" and "```".
std::string example(const std::string& language) {
  const std::string page = guidesPage();
  const auto mark = page.find("```" + language + "\n");
  EXPECT_NE(mark, page.npos) << language;
  const auto begin = page.find('\n', mark) + 1;
  return page.substr(begin, page.find("```", begin) - begin);
}

/// One line of an example in the words of VBScript, which the system's host runs: each value that
/// it reads is told. The host lets messages run while a box is shown; the test closes it.
std::string translated(const std::string& line) {
  std::smatch found;
  if (std::regex_search(line, found, std::regex(R"re((?:-ComObject |Dispatch\w*\(")([\w.]+))re")))
    return "Set rx = CreateObject(\"" + found.str(1) + "\")\n";
  const std::string wait = "MsgBox \"\", 0, \"" + narrow(kWaiting) + "\"\n";
  if (std::regex_search(line, std::regex("DoEvents|PumpWaitingMessages")))
    return "Do\n" + wait + "Loop Until rx.IsRxOnline(0)\n";
  std::string script;
  const std::regex call(R"(\$?\brx\.(\w+\([^()]*\)))");
  for (std::sregex_iterator at(line.begin(), line.end(), call), end; at != end; ++at) {
    std::string words = "rx." + at->str(1);
    words = std::regex_replace(words, std::regex(R"(\$)"), "");
    words =
        std::regex_replace(words, std::regex("\"Kelvane\""), '"' + std::string(kInstance) + '"');
    script += (at->position() == 0 ? "Call " : "WScript.Echo ") + words + "\n";
  }
  return script;
}

std::string translatedExample(const std::string& language) {
  std::istringstream lines(example(language));
  std::string script;
  for (std::string line; std::getline(lines, line);) script += translated(line);
  return script + "MsgBox \"\", 0, \"" + narrow(kWaiting) +
         "\"\nWScript.Echo rx.GetRxFrequency(0, 0)\n";
}

/// Runs a command to its end, a minute at most, and closes the boxes by which a script waits;
/// answers what it wrote.
std::string outputOf(std::wstring command, const TemporaryFolder& folder) {
  const std::filesystem::path written = folder / L"output.txt";
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  const HANDLE file = CreateFileW(written.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = start.hStdError = file;
  PROCESS_INFORMATION process{};
  EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                             com::programFolder().c_str(), &start, &process));
  CloseHandle(file);
  const ULONGLONG end = GetTickCount64() + 60'000;
  while (WaitForSingleObject(process.hProcess, 50) == WAIT_TIMEOUT && GetTickCount64() < end) {
    const HWND box = FindWindowW(nullptr, kWaiting);
    if (box) PostMessageW(box, WM_COMMAND, IDOK, 0);
  }
  TerminateProcess(process.hProcess, 1);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return std::regex_replace(fileContent(written), std::regex("\r"), "");
}

ComPtr<IDispatch> createByProgramId() {
  CLSID component{};
  EXPECT_EQ(CLSIDFromProgID(kProgramId, &component), S_OK);
  ComPtr<IDispatch> object;
  CoCreateInstance(component, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch),
                   object.receiveAny());
  return object;
}

/// The default event interface that the object's class names in its type library.
ComPtr<ITypeInfo> eventsOf(IDispatch* object) {
  ComPtr<ITypeInfo> component, events;
  com::queryFor<IProvideClassInfo>(object)->GetClassInfo(component.receive());
  int flags = 0;
  for (UINT i = 0; component->GetImplTypeFlags(i, &flags) == S_OK; ++i) {
    HREFTYPE reference = 0;
    if ((flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) ==
            (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE) &&
        component->GetRefTypeOfImplType(i, &reference) == S_OK)
      component->GetRefTypeInfo(reference, events.receive());
  }
  return events;
}

GUID identityOf(ITypeInfo* type) {
  TYPEATTR* attributes = nullptr;
  type->GetTypeAttr(&attributes);
  const GUID guid = attributes->guid;
  type->ReleaseTypeAttr(attributes);
  return guid;
}

/// "RxFrqUpdated" to "rx, frequency, origin"; and its number.
std::string parameters(ITypeInfo* events, const std::string& name, DISPID& id) {
  std::wstring wanted = wide(name);
  LPOLESTR names[] = {wanted.data()};
  if (events->GetIDsOfNames(names, 1, &id) != S_OK) return "no such event";
  BSTR found[8] = {};
  UINT count = 0;
  events->GetNames(id, found, 8, &count);
  std::string text;
  for (UINT i = 0; i < count; ++i) {
    if (i > 0) text += (i > 1 ? ", " : "") + narrow(found[i]);
    SysFreeString(found[i]);
  }
  return text;
}

/// What a script language connects: it knows the events' numbers alone.
class ScriptSink final : public com::EventSink {
 public:
  using EventSink::EventSink;
  void forget() override {}
  std::map<DISPID, std::vector<Long>> heard;

 private:
  HRESULT deliver(DISPID event, const DISPPARAMS& arguments) override {
    std::vector<Long>& values = heard[event];
    values.clear();
    for (UINT i = arguments.cArgs; i-- > 0;)
      values.push_back(com::valueOf<Long>(arguments.rgvarg[i]).value_or(-1));
    return S_OK;
  }
};

}  // namespace

/// The components are registered as the page says, and the instance's files are gone afterwards.
class Scripts : public ComTest {
 protected:
  Scripts() {
    forgetInstance();
    registerWith(L"");
    heeded_.emplace();
  }
  ~Scripts() override {
    heeded_.reset();
    registerWith(L" /u");
    forgetInstance();
  }

  const TemporaryFolder folder_;

 private:
  std::optional<ClassesForMachine> heeded_;

  void registerWith(const std::wstring& words) const {
    const std::string page = guidesPage();
    const std::regex command(R"(regsvr32( \w+\.dll))");
    for (std::sregex_iterator at(page.begin(), page.end(), command), end; at != end; ++at)
      outputOf(L"regsvr32 /s" + words + wide(at->str(1)), folder_);
  }
  static void forgetInstance() {
    wchar_t base[MAX_PATH];
    GetEnvironmentVariableW(L"LOCALAPPDATA", base, MAX_PATH);
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::path(base) / L"Kelvane" / wide(kInstance),
                                ignored);
  }
};

TEST_F(Scripts, OfTheGuideRunLateBoundInTheSystemsHost) {
  for (const char* language : {"powershell", "python"}) {
    const std::string script = translatedExample(language);
    folder_.write(L"example.vbs", script);
    const std::wstring file = (folder_ / L"example.vbs").wstring();
    const std::string output = outputOf(L"cscript //nologo \"" + file + L"\"", folder_);
    EXPECT_NE(output.find("Harrow\n6070000\n7050000\n"), output.npos)
        << language << ": " << output << "\n"
        << script;
  }
}

TEST_F(Scripts, HearTheEventThatTheGuideNames) {
  const ComPtr<IDispatch> object = createByProgramId();
  ASSERT_TRUE(object);
  const ComPtr<ITypeInfo> events = eventsOf(object.get());
  ASSERT_TRUE(events);
  const std::regex handler(R"(def On(\w+)\(self, ([^)]*)\))");
  const std::string page = guidesPage();
  std::smatch named;
  ASSERT_TRUE(std::regex_search(page, named, handler)) << page;
  DISPID id = 0;
  EXPECT_EQ(parameters(events.get(), named.str(1), id), named.str(2));

  const ComPtr<ScriptSink> sink(new ScriptSink(identityOf(events.get())));
  ComPtr<IConnectionPoint> point;
  com::queryFor<IConnectionPointContainer>(object.get())
      ->FindConnectionPoint(identityOf(events.get()), point.receive());
  DWORD cookie = 0;
  ASSERT_EQ(point->Advise(sink.get(), &cookie), S_OK);
  com::ComReceiver rx(object);
  EXPECT_EQ(rx.OpenRxConfig(kInstance, 0).value(), 4);
  rx.SetRxConnect(0, true);
  EXPECT_TRUE(pumpUntil([&] { return rx.IsRxOnline(0).value(); }));
  rx.SetRxFrequency(0, false, 7'050'000);
  EXPECT_TRUE(pumpUntil([&] {
    return sink->heard[id] == std::vector<Long>{0, 7'050'000, 0};
  })) << named.str(1);
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

}  // namespace kelvane::test
