#pragma once

#include <filesystem>

#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::com {

/// What the parts of a component's library say of themselves in its embedded type library.
struct TypeLibrary {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> operations;  ///< of the dual interface
  ComPtr<ITypeInfo> coclass;
};

/// The module that holds this code: the component's DLL, not the program that loaded it.
HMODULE ownModule();
std::filesystem::path ownFile();

/// Reads the type library embedded in the own file, without registering anything.
HRESULT readTypeLibrary(REFIID operations, REFCLSID coclass, TypeLibrary& result);

}  // namespace kelvane::com
