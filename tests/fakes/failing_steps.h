#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <utility>

#include "base/safe_file.h"

namespace kelvane::fakes {

/// A disk on which the n-th step goes wrong: it fails, or the program stops there (half of what was
/// being written is left, and nothing that would follow is done), or another program holds the file
/// for some tries, which take no time here.
class FailingSteps : public FileSteps {
 public:
  enum class How { Fail, Stop, Hold };

  FailingSteps(int step, How how, int tries = 1) : left_(step), how_(how), tries_(tries) {}
  /// Nothing goes wrong before arm() is called.
  explicit FailingSteps(How how, int tries = 1) : FailingSteps(1 << 30, how, tries) {}
  /// The n-th step from now on goes wrong; with a name, the n-th with a file whose name begins so.
  void arm(int step, std::string name = {}) {
    const std::lock_guard lock(mutex_);
    name_ = std::move(name);
    left_ = step;
  }

  /// Whether the write came as far as the step that goes wrong.
  bool struck() const { return left_ <= 0; }
  /// How long the steps waited for another program, in all.
  milliseconds waited() const { return milliseconds(waited_); }

  void pause(milliseconds time) override { waited_ += static_cast<int>(time.count()); }
  FileReading read(const std::filesystem::path& file, std::size_t limit) override {
    if (!strikes(file)) return FileSteps::read(file, limit);
    return {FileReading::Unreadable, {}, failure().reason, failure().held};
  }

  Result<> makeFolders(const std::filesystem::path& folder) override {
    return strikes(folder) ? failure() : FileSteps::makeFolders(folder);
  }
  Result<> write(const std::filesystem::path& file, std::string_view content) override {
    const bool before = struck();
    if (!strikes(file)) return FileSteps::write(file, content);
    if (!before && how_ != How::Hold) FileSteps::write(file, content.substr(0, content.size() / 2));
    return failure();
  }
  Result<> append(const std::filesystem::path& file, std::string_view content) override {
    const bool before = struck();
    if (!strikes(file)) return FileSteps::append(file, content);
    if (!before && how_ != How::Hold)
      FileSteps::append(file, content.substr(0, content.size() / 2));
    return failure();
  }
  Result<> flush(const std::filesystem::path& file) override {
    return strikes(file) ? failure() : FileSteps::flush(file);
  }
  Result<> swapIn(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return strikes(from) ? failure() : FileSteps::swapIn(from, to);
  }
  Result<> secondName(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return strikes(from) ? failure() : FileSteps::secondName(from, to);
  }
  void remove(const std::filesystem::path& file) override {
    if (how_ == How::Fail || !struck()) FileSteps::remove(file);
  }

 private:
  bool strikes(const std::filesystem::path& file) {
    const std::lock_guard lock(mutex_);
    if (!file.filename().string().starts_with(name_)) return false;
    const int left = --left_;
    if (how_ == How::Hold) return left <= 0 && left > -tries_;
    return left == 0 || (left < 0 && how_ == How::Stop);
  }
  Failure failure() const {
    if (how_ == How::Hold) return {"another program uses it", true};
    return {"the disk is full"};
  }

  std::mutex mutex_;
  std::string name_;
  std::atomic<int> left_;
  How how_;
  int tries_;
  std::atomic<int> waited_ = 0;
};

}  // namespace kelvane::fakes
