#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstring>
#include <mutex>

#include "base/barrier.h"
#include "base/socket.h"
#include "base/win32/utf16.h"

namespace kelvane {

namespace {

std::optional<std::vector<NetAddress>> resolve(const std::string& host, const std::string& port,
                                               int flags) {
  WSADATA data;
  if (::WSAStartup(MAKEWORD(2, 2), &data) != 0) return std::nullopt;
  ADDRINFOW wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = flags | AI_NUMERICSERV;
  ADDRINFOW* found = nullptr;
  std::optional<std::vector<NetAddress>> addresses;
  if (::GetAddrInfoW(wide(host).c_str(), wide(port).c_str(), &wanted, &found) == 0) {
    addresses.emplace();
    // A server in the shack listens on IPv4; each refusal before it would cost the operator time.
    for (const bool v4 : {true, false}) {
      for (const ADDRINFOW* each = found; each != nullptr; each = each->ai_next) {
        NetAddress address;
        if ((each->ai_family == AF_INET) != v4 || each->ai_addrlen > address.bytes.size()) continue;
        std::memcpy(address.bytes.data(), each->ai_addr, each->ai_addrlen);
        address.size = each->ai_addrlen;
        addresses->push_back(address);
      }
    }
    ::FreeAddrInfoW(found);
  }
  ::WSACleanup();
  return addresses;
}

}  // namespace

struct NameLookup::Shared {
  std::mutex mutex;
  std::optional<std::vector<NetAddress>> result;
  std::shared_ptr<WakeUp> done;
};

namespace {

/// What the thread of a lookup takes with it.
template <class Shared>
struct Errand {
  std::shared_ptr<Shared> shared;
  std::string host;
  std::string port;
  HMODULE module = nullptr;

  static DWORD WINAPI run(void* self) {
    HMODULE module = nullptr;
    {
      const std::unique_ptr<Errand> errand(static_cast<Errand*>(self));
      module = errand->module;
      std::vector<NetAddress> found;
      barrier("looking a name up", [&] {
        found = resolve(errand->host, errand->port, 0).value_or(std::vector<NetAddress>());
      });
      {
        const std::lock_guard lock(errand->shared->mutex);
        errand->shared->result = std::move(found);
      }
      errand->shared->done->signal();
    }
    ::FreeLibraryAndExitThread(module, 0);
    return 0;
  }
};

}  // namespace

NameLookup::NameLookup(const std::string& host, std::uint16_t port, std::shared_ptr<WakeUp> done)
    : shared_(std::make_shared<Shared>()) {
  const auto service = std::to_string(port);
  shared_->done = std::move(done);
  shared_->result = resolve(host, service, AI_NUMERICHOST);
  if (shared_->result) return;
  using Work = Errand<Shared>;
  auto errand = std::make_unique<Work>(Work{shared_, host, service});
  // The thread may outlive everything here, but not the code that it runs.
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&Work::run), &errand->module);
  const HANDLE thread = ::CreateThread(nullptr, 0, &Work::run, errand.get(), 0, nullptr);
  if (thread != nullptr) {
    errand.release();
    ::CloseHandle(thread);
  } else {
    shared_->result.emplace();
    ::FreeLibrary(errand->module);
    shared_->done->signal();
  }
}

std::optional<std::vector<NetAddress>> NameLookup::result() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->result;
}

}  // namespace kelvane
