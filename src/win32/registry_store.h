#pragma once

#include <windows.h>

#include "settings/settings.h"

namespace kelvane::win32 {

/// An instance's settings in the user's registry.
class RegistryStore : public SettingsStore {
 public:
  explicit RegistryStore(std::string_view instance);

  std::int32_t number(std::string_view name, std::int32_t fallback) const override;
  std::string text(std::string_view name, const std::string& fallback) const override;
  bool writeNumber(std::string_view name, std::int32_t value) override;
  bool writeText(std::string_view name, const std::string& value) override;
  bool erase() override;

 private:
  bool write(std::string_view name, DWORD kind, const void* data, DWORD size);

  std::wstring instance_;
};

}  // namespace kelvane::win32
