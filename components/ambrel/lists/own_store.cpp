#include "components/ambrel/lists/own_store.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <functional>
#include <string_view>
#include <utility>

#include "base/barrier.h"
#include "base/file_lock.h"

namespace kelvane::lists {

namespace {

std::size_t markOf(std::string_view content) { return std::hash<std::string_view>()(content) | 1; }

constexpr std::size_t kUnreadTold = 5;

}  // namespace

OwnStore::OwnStore(std::filesystem::path file, std::shared_ptr<FileSteps> disk,
                   std::function<void()> wake)
    : file_(std::move(file)), disk_(std::move(disk)), beside_(std::move(wake)) {}

OwnStore::~OwnStore() { finish(); }

void OwnStore::start(const std::string& what, std::function<Outcome()> job) {
  beside_.start(
      what,
      [this, job = std::move(job)]() -> WorkBeside::Done {
        const auto outcome = std::make_shared<Outcome>(job());
        return [this, outcome] { take(std::move(*outcome)); };
      },
      [this](const std::string& why) {
        Outcome failed;
        failed.how = Failure{why};
        take(std::move(failed));
      });
}

void OwnStore::read() {
  if (busy()) return;
  underWay_ = base_;
  start("reading my stations", [file = file_, disk = disk_, mark = mark_]() -> Outcome {
    FileReading now = readWhenFree(file, kLargestOwnList, *disk);
    Outcome read;
    if (now.how == FileReading::Unreadable || now.how == FileReading::TooLarge) {
      read.how = Failure{now.reason};
      return read;
    }
    read.mark = now.how == FileReading::Missing ? 0 : markOf(now.content);
    read.other = read.mark != mark;
    if (read.other) read.text = readOwnText(now.content);
    if (!read.text.refusal.empty()) read.how = Failure{read.text.refusal};
    return read;
  });
}

void OwnStore::write() {
  underWay_ = std::make_shared<const OwnText>(list_.text());
  writing_ = list_.version();
  start("writing my stations",
        [file = file_, disk = disk_, mark = mark_, base = base_, mine = underWay_]() -> Outcome {
          Outcome done;
          done.wrote = true;
          const auto change = [&](const FileReading& now) -> FileChange {
            if (now.how == FileReading::TooLarge) return Failure{now.reason};
            done.text = *mine;
            done.other = now.how == FileReading::Whole && markOf(now.content) != mark;
            if (done.other) {
              OwnText theirs = readOwnText(now.content);
              if (!theirs.refusal.empty()) return Failure{theirs.refusal};
              done.text = merged(*base, *mine, std::move(theirs));
            }
            std::string content = ownText(done.text);
            done.mark = markOf(content);
            return content;
          };
          done.how = changeFile(file, kLargestOwnList, *disk, change);
          return done;
        });
}

void OwnStore::take(Outcome outcome) {
  if (!outcome.how) {
    lastAccess_ = Failure{std::string("My stations were not ") +
                          (outcome.wrote ? "saved: " : "read: ") + outcome.how.reason()};
    refused_ = outcome.wrote;
    return;
  }
  lastAccess_ = {};
  const bool first = !std::exchange(ready_, true);
  mark_ = outcome.mark;
  if (outcome.other || first) {
    // What was edited meanwhile stays.
    const bool edited = list_.version() != (outcome.wrote ? writing_ : written_);
    if (outcome.other)
      list_.adopt(edited ? merged(*underWay_, list_.text(), outcome.text) : outcome.text);
    unread_ = unreadWords(outcome.text);
    if (!edited) written_ = list_.version();
  } else if (outcome.wrote) {
    written_ = writing_;
  }
  if (outcome.other || outcome.wrote)
    base_ = std::make_shared<const OwnText>(std::move(outcome.text));
  if ((outcome.other || outcome.wrote) && changed) changed();
}

bool OwnStore::deliver() {
  const bool news = beside_.deliver();
  if (busy()) return news;
  if (refused_ && list_.version() != writing_) refused_ = false;
  if (ready_ && !refused_ && list_.version() != written_) write();
  return news;
}

void OwnStore::finish() {
  // The second round writes what was edited while the first one wrote.
  for (int round = 0; round < 4; ++round) {
    deliver();
    if (!busy()) return;
    beside_.wait();
  }
}

std::string OwnStore::unreadWords(const OwnText& text) {
  if (text.unread.empty()) return {};
  std::string words = std::to_string(text.unread.size()) +
                      (text.unread.size() == 1 ? " line was" : " lines were") +
                      " not understood and stay in the file as they are.";
  for (std::size_t i = 0; i < std::min(kUnreadTold, text.reasons.size()); ++i)
    words += " Line " + std::to_string(text.unreadAt[i]) + ": " + text.reasons[i] + ".";
  return words;
}

}  // namespace kelvane::lists
