#include "base/name_resolution.h"

// The order is Windows' own.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <memory>

#include "base/win32/utf16.h"

namespace kelvane {

namespace {

/// What a detached thread takes with it.
struct DetachedJob {
  std::function<void()> job;
  HMODULE module = nullptr;

  static DWORD WINAPI run(void* self) {
    HMODULE module = nullptr;
    {
      const std::unique_ptr<DetachedJob> own(static_cast<DetachedJob*>(self));
      module = own->module;
      own->job();
    }
    ::FreeLibraryAndExitThread(module, 0);
    return 0;
  }
};

}  // namespace

std::optional<std::vector<NetAddress>> resolve(const std::string& host, const std::string& port,
                                               bool numericOnly) {
  WSADATA data;
  if (::WSAStartup(MAKEWORD(2, 2), &data) != 0) return std::nullopt;
  ADDRINFOW wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = AI_NUMERICSERV | (numericOnly ? AI_NUMERICHOST : 0);
  ADDRINFOW* found = nullptr;
  std::optional<std::vector<NetAddress>> addresses;
  if (::GetAddrInfoW(wide(host).c_str(), wide(port).c_str(), &wanted, &found) == 0) {
    addresses = addressesOf(found, AF_INET);
    ::FreeAddrInfoW(found);
  }
  ::WSACleanup();
  return addresses;
}

bool runDetached(std::function<void()> job) {
  auto own = std::make_unique<DetachedJob>(DetachedJob{std::move(job)});
  // The thread holds the module whose code it runs.
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&DetachedJob::run), &own->module);
  const HANDLE thread = ::CreateThread(nullptr, 0, &DetachedJob::run, own.get(), 0, nullptr);
  if (thread == nullptr) {
    ::FreeLibrary(own->module);
    return false;
  }
  own.release();
  ::CloseHandle(thread);
  return true;
}

}  // namespace kelvane
