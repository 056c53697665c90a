#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

namespace kelvane::fakes {

/// A folder of its own for one test, gone with it.
class TempFolder {
 public:
  TempFolder() {
    const auto parent = std::filesystem::temp_directory_path();
    std::random_device random;
    for (int tries = 0; tries < 100; ++tries) {
      path_ = parent / ("kelvane-" + std::to_string(random()));
      if (std::filesystem::create_directory(path_)) return;
    }
    throw std::runtime_error("no folder for temporary files");
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace kelvane::fakes
