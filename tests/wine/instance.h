#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kelvane::wine {

/// An instance of a test's own: its settings key and its files, gone with it.
class Instance {
 public:
  explicit Instance(const std::wstring& name);
  ~Instance();
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  const std::wstring& name() const { return name_; }
  std::filesystem::path folder() const;
  /// Gives the instance this list of receivers, before it is started.
  void writeReceivers(const std::string& text) const;

  bool hasSettings() const;
  std::optional<std::int32_t> number(const wchar_t* setting) const;
  void write(const wchar_t* setting, std::uint32_t kind, const void* data,
             std::uint32_t size) const;
  void write(const wchar_t* setting, std::int32_t value) const;

 private:
  std::wstring key() const;
  void erase() const;

  std::wstring name_;
};

/// A copy of the program's folder that a test may damage; gone with it.
class ProgramCopy {
 public:
  ProgramCopy();
  ~ProgramCopy();
  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

}  // namespace kelvane::wine
