#include "base/file_saver.h"

#include <algorithm>

#include "base/barrier.h"

namespace kelvane {

FileSaver::FileSaver(std::shared_ptr<FileSteps> steps) : steps_(std::move(steps)) {}

FileSaver::~FileSaver() {
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void FileSaver::save(const std::filesystem::path& path, std::string content, Ended ended) {
  change(
      path,
      [path, content = std::move(content)](FileSteps& steps) {
        return writeFileSafely(path, content, steps);
      },
      std::move(ended));
}

void FileSaver::change(const std::filesystem::path& path, Work work, Ended ended) {
  {
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
    const auto same = std::ranges::find(waiting_, path, &Job::path);
    if (same != waiting_.end()) {
      same->work = std::move(work);
      same->ended = std::move(ended);
    } else {
      waiting_.push_back({path, std::move(work), std::move(ended)});
    }
  }
  changed_.notify_all();
}

void FileSaver::finish() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return waiting_.empty() && !writing_; });
}

void FileSaver::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return !waiting_.empty() || closing_; });
    if (waiting_.empty()) return;
    const Job job = std::move(waiting_.front());
    waiting_.pop_front();
    writing_ = true;
    lock.unlock();
    Result<> result;
    barrier(
        "writing a file", [&] { result = job.work(*steps_); },
        [&](const std::string& why) { result = Failure{"Cannot write a file: " + why}; });
    if (job.ended) tell(job, result);
    lock.lock();
    writing_ = false;
    changed_.notify_all();
  }
}

/// Who waits for a word of it would wait for ever.
void FileSaver::tell(const Job& job, const Result<>& result) {
  constexpr int kTries = 20;
  const auto told = [&] {
    return barrier("telling how a file was written", [&] { job.ended(result); });
  };
  for (int tries = 1; !told() && tries < kTries; ++tries) steps_->pause(kFilePause);
}

}  // namespace kelvane
