#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvane {

/// The program's own settings, one set per instance: small named numbers and texts. A store is
/// made for one instance and knows its place from then on. Nothing here fails loudly: what is
/// missing or of the wrong kind reads as the fallback, and a failed write only answers false.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  virtual std::int32_t number(std::string_view name, std::int32_t fallback) const = 0;
  /// UTF-8; stored in the system's single-byte code page.
  virtual std::string text(std::string_view name, const std::string& fallback) const = 0;
  virtual bool writeNumber(std::string_view name, std::int32_t value) = 0;
  virtual bool writeText(std::string_view name, const std::string& value) = 0;
  /// Deletes everything that the instance has stored. True when the place where instances keep
  /// their settings exists, whether or not this one had any.
  virtual bool erase() = 0;

  /// A flag is a number: 0 is false, anything else is true, and true is written as -1.
  bool flag(std::string_view name, bool fallback) const { return number(name, fallback) != 0; }
  bool writeFlag(std::string_view name, bool value) { return writeNumber(name, value ? -1 : 0); }
};

}  // namespace kelvane
