#include "base/file_saver.h"

#include <algorithm>

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
    const auto same = std::ranges::find(waiting_, path, &Job::path);
    if (same != waiting_.end()) {
      same->work = std::move(work);
      same->ended = std::move(ended);
    } else {
      waiting_.push_back({path, std::move(work), std::move(ended)});
    }
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
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
    const FileResult result = job.work(*steps_);
    if (job.ended) job.ended(result);
    lock.lock();
    writing_ = false;
    changed_.notify_all();
  }
}

}  // namespace kelvane
