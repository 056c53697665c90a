#pragma once

#include "base/safe_file.h"

namespace kelvane::fakes {

/// A disk on which the n-th step of a write goes wrong: it fails, or the program stops there (half
/// of what was being written is left, and nothing that would follow is done).
class FailingSteps : public FileSteps {
 public:
  enum class How { Fail, Stop };

  FailingSteps(int step, How how) : left_(step), how_(how) {}

  /// Whether the write came as far as the step that goes wrong.
  bool struck() const { return left_ <= 0; }

  FileResult makeFolders(const std::filesystem::path& folder) override {
    return strikes() ? failure() : FileSteps::makeFolders(folder);
  }
  FileResult write(const std::filesystem::path& file, std::string_view content) override {
    const bool before = struck();
    if (!strikes()) return FileSteps::write(file, content);
    if (!before) FileSteps::write(file, content.substr(0, content.size() / 2));
    return failure();
  }
  FileResult flush(const std::filesystem::path& file) override {
    return strikes() ? failure() : FileSteps::flush(file);
  }
  FileResult swapIn(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return strikes() ? failure() : FileSteps::swapIn(from, to);
  }
  FileResult secondName(const std::filesystem::path& from,
                        const std::filesystem::path& to) override {
    return strikes() ? failure() : FileSteps::secondName(from, to);
  }
  void remove(const std::filesystem::path& file) override {
    if (how_ == How::Fail || !struck()) FileSteps::remove(file);
  }

 private:
  bool strikes() { return --left_ == 0 || (left_ < 0 && how_ == How::Stop); }
  static FileResult failure() { return {false, "the disk is full"}; }

  int left_;
  How how_;
};

}  // namespace kelvane::fakes
