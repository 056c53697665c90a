#include "components/sondrel/win32/system_ports.h"

#include <windows.h>

#include <setupapi.h>

#include <algorithm>
#include <map>

#include "base/number.h"
#include "base/win32/system_library.h"
#include "base/win32/utf16.h"

namespace kelvane::sondrel {

namespace {

/// The class of devices "Ports (COM & LPT)".
constexpr GUID kPortDevices = {
    0x4d36e978, 0xe325, 0x11ce, {0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18}};

constexpr wchar_t kSetupLibrary[] = L"setupapi.dll";

/// The name of a device's port, "COM5"; empty where it has none.
std::wstring portNameOf(HDEVINFO list, SP_DEVINFO_DATA& device) {
  static const auto openKey =
      systemFunction<decltype(SetupDiOpenDevRegKey)>(kSetupLibrary, "SetupDiOpenDevRegKey");
  if (!openKey) return {};
  const HKEY key = openKey(list, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
  if (key == INVALID_HANDLE_VALUE) return {};
  wchar_t name[64] = L"";
  DWORD size = sizeof name;
  const LSTATUS read = RegGetValueW(key, nullptr, L"PortName", RRF_RT_REG_SZ, nullptr, name, &size);
  RegCloseKey(key);
  return read == ERROR_SUCCESS ? std::wstring(name) : std::wstring();
}

/// What the system calls each port that is plugged in.
std::map<std::wstring, std::wstring> friendlyNames() {
  static const auto classDevices =
      systemFunction<decltype(SetupDiGetClassDevsW)>(kSetupLibrary, "SetupDiGetClassDevsW");
  static const auto nextDevice =
      systemFunction<decltype(SetupDiEnumDeviceInfo)>(kSetupLibrary, "SetupDiEnumDeviceInfo");
  static const auto property = systemFunction<decltype(SetupDiGetDeviceRegistryPropertyW)>(
      kSetupLibrary, "SetupDiGetDeviceRegistryPropertyW");
  static const auto destroy = systemFunction<decltype(SetupDiDestroyDeviceInfoList)>(
      kSetupLibrary, "SetupDiDestroyDeviceInfoList");
  std::map<std::wstring, std::wstring> names;
  if (!classDevices || !nextDevice || !property || !destroy) return names;
  const HDEVINFO list = classDevices(&kPortDevices, nullptr, nullptr, DIGCF_PRESENT);
  if (list == INVALID_HANDLE_VALUE) return names;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD index = 0; nextDevice(list, index, &device); ++index) {
    wchar_t words[256] = L"";
    property(list, &device, SPDRP_FRIENDLYNAME, nullptr, reinterpret_cast<BYTE*>(words),
             sizeof words - sizeof(wchar_t), nullptr);
    if (const auto port = portNameOf(list, device); !port.empty()) names[port] = words;
  }
  destroy(list);
  return names;
}

/// The ports that drivers have opened for use, those included that are no plugged devices.
std::vector<std::wstring> mappedPorts() {
  std::vector<std::wstring> ports;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) !=
      ERROR_SUCCESS)
    return ports;
  for (DWORD index = 0;; ++index) {
    wchar_t name[256], port[64] = L"";
    DWORD length = 256, size = sizeof port - sizeof(wchar_t), type = 0;
    const LSTATUS read = RegEnumValueW(key, index, name, &length, nullptr, &type,
                                       reinterpret_cast<BYTE*>(port), &size);
    if (read == ERROR_NO_MORE_ITEMS || (read != ERROR_SUCCESS && read != ERROR_MORE_DATA)) break;
    if (read == ERROR_SUCCESS && type == REG_SZ) ports.emplace_back(port);
  }
  RegCloseKey(key);
  return ports;
}

/// COM10 behind COM9.
std::pair<double, std::string> portRank(const SerialPort& port) {
  const auto digits = port.name.find_first_of("0123456789");
  return {digits == port.name.npos ? 0 : num(port.name.substr(digits)), port.name};
}

}  // namespace

std::vector<SerialPort> systemSerialPorts() {
  auto names = friendlyNames();
  for (const std::wstring& port : mappedPorts()) names.try_emplace(port);
  std::vector<SerialPort> ports;
  for (const auto& [port, words] : names) {
    if (!port.starts_with(L"COM")) continue;
    ports.push_back({narrow(port), words.empty() ? narrow(port) : narrow(words)});
  }
  std::ranges::sort(ports, {}, portRank);
  return ports;
}

}  // namespace kelvane::sondrel
