#pragma once

#include <windows.h>

namespace kelvane {

/// A function of one of the system's libraries, which is loaded when it is first needed, and from
/// the system's own folder alone: a library that is named in the program's imports may be looked
/// for beside the program first, where anybody may have put one. Null where there is none.
template <class Function>
Function* systemFunction(const wchar_t* library, const char* name) {
  const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (!module) return nullptr;
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace kelvane
