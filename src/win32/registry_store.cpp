#include "win32/registry_store.h"

#include <array>
#include <vector>

#include "base/instance_name.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kBaseKey[] = L"SOFTWARE\\Morvath Software";
constexpr REGSAM kAccess = KEY_READ | KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY |
                           KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY | KEY_CREATE_LINK;

/// An open registry key, closed at the end of its life.
class Key {
 public:
  enum class Missing { Fail, Create };

  Key(HKEY parent, const wchar_t* name, Missing missing) {
    if (RegOpenKeyExW(parent, name, 0, kAccess, &key_) == ERROR_SUCCESS) return;
    key_ = nullptr;
    if (missing == Missing::Create && RegCreateKeyExW(parent, name, 0, nullptr, 0, kAccess, nullptr,
                                                      &key_, nullptr) != ERROR_SUCCESS)
      key_ = nullptr;
  }
  ~Key() {
    if (key_) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  explicit operator bool() const { return key_ != nullptr; }
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

/// More than any value of ours has, bytes.
constexpr DWORD kLongest = 65'536;

/// A value's bytes; empty when it is missing or of another kind.
std::vector<BYTE> read(const std::wstring& instance, std::string_view name, DWORD kind) {
  const Key base(HKEY_CURRENT_USER, kBaseKey, Key::Missing::Fail);
  if (!base) return {};
  const Key own(base.get(), instance.c_str(), Key::Missing::Fail);
  if (!own) return {};
  std::vector<BYTE> bytes(2048);
  DWORD found = 0;
  const auto query = [&](DWORD& size) {
    size = static_cast<DWORD>(bytes.size());
    return RegQueryValueExW(own.get(), wide(name).c_str(), nullptr, &found, bytes.data(), &size);
  };
  DWORD size = 0;
  LSTATUS status = query(size);
  if (status == ERROR_MORE_DATA && size <= kLongest) {
    bytes.resize(size);
    status = query(size);
  }
  if (status != ERROR_SUCCESS || found != kind) return {};
  bytes.resize(size);
  return bytes;
}

}  // namespace

RegistryStore::RegistryStore(std::string_view instance)
    : instance_(wide(safeInstanceName(instance))) {}

std::int32_t RegistryStore::number(std::string_view name, std::int32_t fallback) const {
  const auto bytes = read(instance_, name, REG_DWORD);
  std::int32_t value = fallback;
  if (bytes.size() == sizeof value) memcpy(&value, bytes.data(), sizeof value);
  return value;
}

std::string RegistryStore::text(std::string_view name, const std::string& fallback) const {
  const auto bytes = read(instance_, name, REG_SZ);
  std::wstring value(bytes.size() / sizeof(wchar_t), L'\0');
  memcpy(value.data(), bytes.data(), value.size() * sizeof(wchar_t));
  if (value.empty()) return fallback;
  // Other programs may have stored the text without its closing zero.
  if (value.back() == L'\0') value.pop_back();
  return narrow(value);
}

bool RegistryStore::write(std::string_view name, DWORD kind, const void* data, DWORD size) {
  const Key base(HKEY_CURRENT_USER, kBaseKey, Key::Missing::Create);
  if (!base) return false;
  const Key own(base.get(), instance_.c_str(), Key::Missing::Create);
  return own && RegSetValueExW(own.get(), wide(name).c_str(), 0, kind,
                               static_cast<const BYTE*>(data), size) == ERROR_SUCCESS;
}

bool RegistryStore::writeNumber(std::string_view name, std::int32_t value) {
  return write(name, REG_DWORD, &value, sizeof value);
}

bool RegistryStore::writeText(std::string_view name, const std::string& value) {
  const std::wstring text = wide(value);
  return write(name, REG_SZ, text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

bool RegistryStore::erase() {
  const Key base(HKEY_CURRENT_USER, kBaseKey, Key::Missing::Fail);
  if (!base) return false;
  RegDeleteKeyW(base.get(), instance_.c_str());
  return true;
}

}  // namespace kelvane::win32
