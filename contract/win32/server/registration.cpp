#include "contract/win32/server/registration.h"

#include <span>
#include <string_view>

#include "contract/win32/com.h"
#include "contract/win32/server/path_rights.h"
#include "contract/win32/server/type_library.h"

namespace kelvane::com {

namespace {

constexpr wchar_t kClasses[] = L"Software\\Classes\\";
constexpr wchar_t kVersion[] = L"1.0";
constexpr const wchar_t* kPlatform = sizeof(void*) == 8 ? L"win64" : L"win32";

// The system's own marshallers: for interfaces that a type library describes, and for IDispatch.
constexpr wchar_t kAutomationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kDispatchMarshaller[] = L"{00020420-0000-0000-C000-000000000046}";

std::wstring guidText(REFGUID guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return text;
}

HRESULT write(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  const DWORD bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  return HRESULT_FROM_WIN32(
      RegSetKeyValueW(root, (kClasses + key).c_str(), name, REG_SZ, value.c_str(), bytes));
}

HRESULT remove(HKEY root, const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(root, (kClasses + key).c_str());
  if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) return S_OK;
  return HRESULT_FROM_WIN32(status);
}

struct Value {
  std::wstring key;
  const wchar_t* name;
  std::wstring value;
};

HRESULT writeAll(HKEY root, std::span<const Value> values) {
  for (const Value& v : values) {
    if (const HRESULT code = write(root, v.key, v.name, v.value); FAILED(code)) return code;
  }
  return S_OK;
}

std::wstring classKey(const Registration& r) { return L"CLSID\\" + guidText(r.component); }
std::wstring libraryKey(const Registration& r) { return L"TypeLib\\" + guidText(r.library); }
std::wstring interfaceKey(REFIID iid) { return L"Interface\\" + guidText(iid); }

HRESULT writeClass(HKEY root, const Registration& r) {
  const std::wstring key = classKey(r);
  const Value values[] = {
      {key, nullptr, r.name},
      {key + L"\\InprocServer32", nullptr, ownFile().wstring()},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", nullptr, r.programId},
      {key + L"\\TypeLib", nullptr, guidText(r.library)},
      {key + L"\\Version", nullptr, kVersion},
      {r.programId, nullptr, r.name},
      {r.programId + L"\\CLSID", nullptr, guidText(r.component)},
  };
  return writeAll(root, values);
}

/// The type library, for tools that show it and for calls from other apartments and processes.
HRESULT writeLibrary(HKEY root, const Registration& r) {
  const std::wstring key = libraryKey(r) + L"\\" + kVersion;
  const Value values[] = {
      {key, nullptr, r.name},
      {key + L"\\0\\" + kPlatform, nullptr, ownFile().wstring()},
      {key + L"\\FLAGS", nullptr, L"0"},
      {key + L"\\HELPDIR", nullptr, ownFile().parent_path().wstring()},
  };
  return writeAll(root, values);
}

HRESULT writeInterface(HKEY root, const Registration& r, REFIID iid, const wchar_t* name,
                       const wchar_t* marshaller) {
  const std::wstring key = interfaceKey(iid);
  const Value values[] = {
      {key, nullptr, name},
      {key + L"\\ProxyStubClsid32", nullptr, marshaller},
      {key + L"\\TypeLib", nullptr, guidText(r.library)},
      {key + L"\\TypeLib", L"Version", kVersion},
  };
  return writeAll(root, values);
}

HRESULT unregisterFrom(HKEY root, const Registration& r) {
  HRESULT result = S_OK;
  for (const std::wstring& key : {interfaceKey(r.events), interfaceKey(r.operations), libraryKey(r),
                                  r.programId, classKey(r)}) {
    if (const HRESULT code = remove(root, key); FAILED(code)) result = code;
  }
  return result;
}

HRESULT registerIn(HKEY root, const Registration& r) {
  HRESULT code = writeClass(root, r);
  if (SUCCEEDED(code)) code = writeLibrary(root, r);
  if (SUCCEEDED(code)) {
    code = writeInterface(root, r, r.operations, r.operationsName, kAutomationMarshaller);
  }
  if (SUCCEEDED(code)) {
    code = writeInterface(root, r, r.events, r.eventsName, kDispatchMarshaller);
  }
  if (FAILED(code)) unregisterFrom(root, r);
  return code;
}

}  // namespace

HRESULT registerComponent(const Registration& registration) {
  return registerIn(HKEY_CURRENT_USER, registration);
}

HRESULT registerForMachine(const Registration& registration) {
  if (!onlyAdministratorsWrite(ownFile())) return E_ACCESSDENIED;
  return registerIn(HKEY_LOCAL_MACHINE, registration);
}

HRESULT install(const Registration& registration, bool wanted, const wchar_t* words) {
  const std::wstring_view asked = words ? words : L"";
  if (!asked.empty() && asked != L"machine") return E_INVALIDARG;
  if (!wanted) return unregisterComponent(registration);
  return asked.empty() ? registerComponent(registration) : registerForMachine(registration);
}

HRESULT unregisterComponent(const Registration& registration) {
  const HRESULT user = unregisterFrom(HKEY_CURRENT_USER, registration);
  const HRESULT machine = unregisterFrom(HKEY_LOCAL_MACHINE, registration);
  return FAILED(machine) ? machine : user;
}

}  // namespace kelvane::com
