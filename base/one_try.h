#pragma once

#include <filesystem>
#include <string_view>

#include "base/safe_file.h"

namespace kelvane {

/// The steps of another disk, for a thread that a window waits for: whoever is in the way of a file
/// is not waited for. What fails then says that it was `held`.
class OneTry final : public FileSteps {
 public:
  explicit OneTry(FileSteps& disk) : disk_(disk) {}

  FileReading read(const std::filesystem::path& file, std::size_t limit) override {
    return disk_.read(file, limit);
  }
  Result<> makeFolders(const std::filesystem::path& folder) override {
    return disk_.makeFolders(folder);
  }
  Result<> write(const std::filesystem::path& file, std::string_view content) override {
    return disk_.write(file, content);
  }
  Result<> append(const std::filesystem::path& file, std::string_view content) override {
    return disk_.append(file, content);
  }
  Result<> flush(const std::filesystem::path& file) override { return disk_.flush(file); }
  Result<> swapIn(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return disk_.swapIn(from, to);
  }
  Result<> secondName(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return disk_.secondName(from, to);
  }
  void remove(const std::filesystem::path& file) override { disk_.remove(file); }
  void pause(milliseconds) override {}

 private:
  FileSteps& disk_;
};

}  // namespace kelvane
