#include "base/work_beside.h"

#include <utility>

namespace kelvane {

WorkBeside::WorkBeside(std::function<void()> wake) : wake_(std::move(wake)) {}

void WorkBeside::start(std::string what, Job job, Failed failed) {
  const auto answer = std::make_shared<Answer>();
  answer->job = std::move(job);
  answer->failed = std::move(failed);
  std::function<void()> work = [this, what, answer] { this->work(what, *answer); };
  Failed notStarted = [this, answer](const std::string& why) {
    answer->threw = true;
    barrier("starting work beside the window", [&] { answer->words = why; });
    end(*answer);
  };
  underWay_.push_back(answer);
  background_.run(std::move(what), std::move(work), std::move(notStarted));
}

void WorkBeside::work(const std::string& what, Answer& answer) {
  answer.threw = !barrier(
      what, [&] { answer.done = answer.job(); },
      [&](const std::string& why) { answer.words = why; });
  end(answer);
}

void WorkBeside::end(Answer& answer) {
  // What the job held is let go before its end is told, such as a file that made way for another.
  answer.job = nullptr;
  {
    const std::lock_guard lock(mutex_);
    answer.ended = true;
  }
  if (wake_) wake_();
}

bool WorkBeside::deliver() {
  bool any = false;
  while (!underWay_.empty()) {
    {
      const std::lock_guard lock(mutex_);
      if (!underWay_.front()->ended) break;
    }
    const auto answer = std::move(underWay_.front());
    underWay_.pop_front();
    any = true;
    if (answer->threw) {
      if (answer->failed) answer->failed(answer->words);
    } else if (answer->done) {
      answer->done();
    }
  }
  return any;
}

}  // namespace kelvane
