#include <windows.h>

#include <ddeml.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "base/barrier.h"
#include "base/win32/utf16.h"

// A DDE server of digits, as a tone decoder is one, that sends what it is told:
//
//   DigitServer Kelvane_Harrow
//
// Each line that it reads is keys, which it sends one after the other ("7123#"), or one of
//   =TEXT     sends the text as it stands
//   gap N     from now on says and waits N ms between keys (100); 0: says no time
//   hang N    answers nobody for N seconds
//   end

namespace {

using std::chrono::milliseconds;

constexpr wchar_t kTopic[] = L"DTMF";
constexpr wchar_t kItem[] = L"Digit";
constexpr UINT kAnnounce = WM_APP, kHang = WM_APP + 1;

/// The one server of this program. DDE's callback has no room for a word of whose it is.
class DigitServer {
 public:
  static DigitServer& the() {
    static DigitServer server;
    return server;
  }

  bool open(const std::wstring& name) {
    if (DdeInitializeW(&instance_, callback, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR) return false;
    topic_ = DdeCreateStringHandleW(instance_, kTopic, CP_WINUNICODE);
    item_ = DdeCreateStringHandleW(instance_, kItem, CP_WINUNICODE);
    const HSZ service = DdeCreateStringHandleW(instance_, name.c_str(), CP_WINUNICODE);
    return service && DdeNameService(instance_, service, nullptr, DNS_REGISTER);
  }

  /// Carries out what the reading thread sends, until it ends.
  void serve() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
      if (message.message == kAnnounce) {
        const std::unique_ptr<std::string> text(reinterpret_cast<std::string*>(message.lParam));
        text_ = *text;
        DdePostAdvise(instance_, topic_, item_);
      } else if (message.message == kHang) {
        Sleep(static_cast<DWORD>(message.wParam));
      } else {
        DispatchMessageW(&message);
      }
    }
    DdeUninitialize(instance_);
  }

 private:
  static HDDEDATA CALLBACK callback(UINT type, UINT format, HCONV, HSZ first, HSZ second, HDDEDATA,
                                    ULONG_PTR, ULONG_PTR) {
    return the().answer(type, format, first, second);
  }

  HDDEDATA answer(UINT type, UINT format, HSZ topic, HSZ item) {
    const auto yes = reinterpret_cast<HDDEDATA>(static_cast<UINT_PTR>(TRUE));
    const bool ours = DdeCmpStringHandles(item, item_) == 0;
    switch (type) {
      case XTYP_CONNECT:
        return DdeCmpStringHandles(topic, topic_) == 0 ? yes : nullptr;
      case XTYP_CONNECT_CONFIRM:
        std::puts("Connected.");
        std::fflush(stdout);
        return nullptr;
      case XTYP_DISCONNECT:
        std::puts("Disconnected.");
        std::fflush(stdout);
        return nullptr;
      case XTYP_ADVSTART:
        return ours && format == CF_TEXT ? yes : nullptr;
      case XTYP_ADVREQ:
      case XTYP_REQUEST:
        if (!ours || format != CF_TEXT) return nullptr;
        return DdeCreateDataHandle(instance_, reinterpret_cast<BYTE*>(text_.data()),
                                   static_cast<DWORD>(text_.size()) + 1, 0, item_, CF_TEXT, 0);
      default:
        return nullptr;
    }
  }

  DWORD instance_ = 0;
  HSZ topic_ = nullptr, item_ = nullptr;
  std::string text_;
};

/// Reads the lines and hands them on to the serving thread.
class Reader {
 public:
  explicit Reader(DWORD server) : server_(server) {}

  void run() {
    std::string line;
    while (std::getline(std::cin, line) && line != "end") take(line);
    // A client fetches what was announced last.
    std::this_thread::sleep_for(milliseconds(500));
    PostThreadMessageW(server_, WM_QUIT, 0, 0);
  }

 private:
  void take(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.starts_with('=')) return announce(std::string(line.substr(1)));
    if (line.starts_with("gap ")) {
      gap_ = std::atoi(line.data() + 4);
    } else if (line.starts_with("hang ")) {
      PostThreadMessageW(server_, kHang, static_cast<WPARAM>(std::atoi(line.data() + 5) * 1000), 0);
    } else {
      for (const char key : line) send(key);
    }
  }

  /// A client asks for the latest text only, so the keys must not follow too fast.
  void send(char key) {
    announce(std::string(1, key) + (gap_ > 0 ? "|" + std::to_string(gap_) : ""));
    std::this_thread::sleep_for(milliseconds(gap_ > 0 ? gap_ : 100));
  }

  void announce(std::string text) {
    auto letter = std::make_unique<std::string>(std::move(text));
    if (PostThreadMessageW(server_, kAnnounce, 0, reinterpret_cast<LPARAM>(letter.get())))
      letter.release();
  }

  const DWORD server_;
  int gap_ = 100;
};

}  // namespace

int wmain(int count, wchar_t** words) {
  if (count != 2) {
    std::puts("DigitServer NAME    NAME is the panel's DDE server name, \"_\" and the receiver's");
    return 2;
  }
  if (!DigitServer::the().open(words[1])) {
    std::puts("DDE does not work here, or the name cannot be used.");
    return 1;
  }
  std::printf("Serving %s, topic DTMF, item Digit. Type keys and Enter.\n",
              kelvane::narrow(words[1]).c_str());
  std::fflush(stdout);
  std::thread([server = GetCurrentThreadId()] {
    const auto end = [server](const std::string& why) {
      std::printf("No more keys are read: %s.\n", why.c_str());
      PostThreadMessageW(server, WM_QUIT, 0, 0);
    };
    kelvane::barrier(
        "reading keys", [server] { Reader(server).run(); }, end);
  }).detach();
  DigitServer::the().serve();
  return 0;
}
