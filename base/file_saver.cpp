#include "base/file_saver.h"

#include <algorithm>
#include <utility>

#include "base/barrier.h"

namespace kelvane {

FileSaver::FileSaver(std::shared_ptr<FileSteps> steps) : steps_(std::move(steps)) {}

void FileSaver::save(const std::filesystem::path& path, std::string content, Ended ended) {
  change(
      path,
      [path, content = std::move(content)](FileSteps& steps) {
        return writeFileSafely(path, content, steps);
      },
      std::move(ended));
}

void FileSaver::change(const std::filesystem::path& path, Work work, Ended ended) {
  // Made first: what waits has its turn, and nothing may be thrown between the two.
  Failed noTurn = [this, path](const std::string& why) {
    end(take([&](const Job& job) { return job.path == path; }),
        Failure{"Cannot write a file: " + why});
  };
  {
    const std::lock_guard lock(mutex_);
    const auto same = std::ranges::find(waiting_, path, &Job::path);
    if (same != waiting_.end()) {
      same->work = std::move(work);
      same->ended = std::move(ended);
      return;
    }
    waiting_.push_back({path, std::move(work), std::move(ended)});
  }
  background_.run(
      "writing a file", [this] { writeNext(); }, std::move(noTurn));
}

FileSaver::Job FileSaver::take(const std::function<bool(const Job&)>& which) {
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find_if(waiting_, which);
  if (found == waiting_.end()) return {};
  Job job = std::move(*found);
  waiting_.erase(found);
  return job;
}

void FileSaver::writeNext() {
  const Job job = take([](const Job&) { return true; });
  Result<> result;
  barrier(
      "writing a file", [&] { result = job.work(*steps_); },
      [&](const std::string& why) { result = Failure{"Cannot write a file: " + why}; });
  end(job, result);
}

/// Who waits for a word of it would wait for ever.
void FileSaver::end(const Job& job, const Result<>& result) {
  if (!job.ended) return;
  constexpr int kTries = 20;
  const auto told = [&] {
    return barrier("telling how a file was written", [&] { job.ended(result); });
  };
  for (int tries = 1; !told() && tries < kTries; ++tries) steps_->pause(kFilePause);
}

}  // namespace kelvane
