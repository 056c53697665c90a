#include "components/sondrel/channels/channel_keeper.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

#include "base/barrier.h"
#include "base/file_lock.h"
#include "base/second_place.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kLargestChannelFile = 4 << 20;
constexpr milliseconds kRetry{5000};
constexpr Instant kAtOnce{};

}  // namespace

ChannelKeeper::ChannelKeeper(std::filesystem::path file, FileSaver& saver, Mailbox mailbox,
                             Notes notes)
    : file_(std::move(file)),
      saver_(saver),
      mailbox_(std::move(mailbox)),
      notes_(std::move(notes)) {
  const FileReading reading = read();
  reading.how == FileReading::Unreadable ? void(readAt_ = kAtOnce) : take(reading);
}

ChannelKeeper::~ChannelKeeper() {
  mailbox_.close();
  // Where nobody asked before, the words come late and the channels are safe all the same.
  barrier("writing channels", [this] {
    const std::string before = std::exchange(unwritten_, {});
    const Result<> finished = finish();
    if (!finished && finished.reason() != before) notes_.tell(finished.reason());
  });
}

Result<> ChannelKeeper::finish() {
  saver_.finish();
  settle();
  if (!changes_.empty()) {
    save();
    saver_.finish();
    settle();
  }
  unwritten_ = changes_.empty() ? std::string() : keepElsewhere(writing_->reason);
  failing_ = !changes_.empty();  // and said by whoever asked
  return resultOf(unwritten_);
}

std::string ChannelKeeper::keepElsewhere(const std::string& reason) {
  for (const auto& place : secondPlaces(file_)) {
    // Another process may keep its own there.
    const auto joined = [&](const FileReading& now) -> FileChange {
      ChannelChanges changes = readChanges(now.content);
      for (const auto& [channel, record] : changes_) changes.insert_or_assign(channel, record);
      second_[place] = changesText(changes);
      return second_[place];
    };
    if (changeFile(place, kLargestChannelFile, saver_.steps(), joined))
      return reason + ". The channels are kept in " + pathText(place) +
             " and go into their file at the next start.";
    second_.erase(place);
  }
  return reason + ". The channels could not be kept anywhere else either.";
}

/// What could not be written when a program ended.
void ChannelKeeper::takeBack() {
  for (const auto& place : secondPlaces(file_)) {
    FileReading reading = saver_.steps().read(place, kLargestChannelFile);
    if (reading.how != FileReading::Whole) continue;
    for (const auto& [channel, record] : readChanges(reading.content))
      put(channel, record, kAtOnce);
    second_[place] = std::move(reading.content);
  }
  // Where the file has it all, nothing else would come to this.
  if (changes_.empty()) dropSecond();
}

/// The file has what was kept beside it.
void ChannelKeeper::dropSecond() {
  for (const auto& [place, content] : std::exchange(second_, {})) {
    saver_.change(place, [place, content](FileSteps& steps) {
      return changeFile(place, kLargestChannelFile, steps, [&](const FileReading& now) {
        if (now.how == FileReading::Whole && now.content == content) steps.remove(place);
        return FileChange(kUnchanged);
      });
    });
  }
}

Result<> ChannelKeeper::writeTo(const std::filesystem::path& file) const {
  const Result<> written = writeFileSafely(file, bank_.text(), saver_.steps());
  if (!written) return Failure{written.reason() + "."};
  return {};
}

FileReading ChannelKeeper::read() {
  // Before the content: what is written in between counts as changed.
  const Stamp before = stamp();
  FileReading reading = saver_.steps().read(file_, kLargestChannelFile);
  if (reading.how != FileReading::Unreadable) stamp_ = before;
  return reading;
}

ChannelKeeper::Stamp ChannelKeeper::stamp() const {
  std::error_code missing;
  const auto written = std::filesystem::last_write_time(file_, missing);
  if (missing) return {};
  return {std::filesystem::file_size(file_, missing), written};
}

void ChannelKeeper::refresh() {
  if (!known_) readAt_ = std::min(readAt_, kAtOnce);
  if (!known_ || stamp() == stamp_) return;
  const FileReading reading = read();
  // What is in the way now is in the way of nothing: the channels that were read last are shown.
  if (reading.how == FileReading::Whole) take(reading);
}

void ChannelKeeper::readAgain(Instant now) {
  if (giveUpAt_ == kNever) giveUpAt_ = now + kFileRetryTime;
  readAt_ = now + kFilePause;
  const FileReading reading = read();
  const bool readable = reading.how != FileReading::Unreadable;
  if (!readable && reading.held && now < giveUpAt_) return;
  readAt_ = giveUpAt_ = kNever;
  if (readable) return take(reading);
  notes_.askAgain(reading.reason + ". Until it can be read its receiver has no channels.",
                  [this, mailbox = mailbox_] { mailbox.post([this] { refresh(); }); });
}

void ChannelKeeper::take(const FileReading& reading) {
  const bool first = !std::exchange(known_, true);
  takeIn(reading);
  if (first) takeBack();
}

void ChannelKeeper::takeIn(const FileReading& reading) {
  if (reading.how == FileReading::Missing) return;
  auto bank = reading.how == FileReading::Whole ? ChannelBank::read(reading.content) : std::nullopt;
  if (bank) {
    const std::size_t before = bank_.unread();
    bank_ = std::move(*bank);
    for (const auto& [channel, record] : changes_) bank_.put(channel, record);
    if (bank_.unread() == 0 || bank_.unread() == before) return;
    notes_.tell(std::to_string(bank_.unread()) + " lines of " + pathText(file_) +
                " are no channels; they stay in the file.");
    return;
  }
  const auto aside = keepAside(file_);
  notes_.tell((reading.reason.empty() ? pathText(file_) + " holds no channels" : reading.reason) +
              (aside.empty() ? "; the channels are empty."
                             : "; it is kept as " + pathText(aside) + ", the channels are empty."));
}

void ChannelKeeper::put(Channel channel, const ChannelRecord& record, Instant now) {
  if (!bank_.put(channel, record)) return;
  changes_[channel] = record;
  due_ = now;
}

void ChannelKeeper::tick(Instant now) {
  if (now >= readAt_) readAgain(now);
  if (retry_) {
    retry_ = false;
    due_ = now + kRetry;
  }
  if (now >= due_) save();
}

Result<> ChannelKeeper::write(const std::filesystem::path& file, Writing& writing,
                              FileSteps& steps) {
  const auto change = [&](const FileReading& now) -> FileChange {
    auto there = now.how == FileReading::Whole ? ChannelBank::read(now.content) : std::nullopt;
    if (now.how != FileReading::Missing && !there && keepAside(file).empty())
      return Failure{pathText(file) + " holds no channels and cannot be moved aside"};
    // Where there is nothing to add to, all that is known is written.
    if (there) writing.bank = std::move(*there);
    for (const auto& [channel, record] : writing.changes) writing.bank.put(channel, record);
    std::string text = writing.bank.text();
    const bool differs = now.how != FileReading::Whole || text != now.content;
    if (!differs) return kUnchanged;
    return text;
  };
  const Result<> result = changeFile(file, kLargestChannelFile, steps, change);
  writing.reason = result.reason();
  writing.done = result.ok();
  return result;
}

void ChannelKeeper::save() {
  due_ = kNever;
  const auto writing = std::make_shared<Writing>();
  writing->bank = bank_;
  writing->changes = changes_;
  writing_ = writing;
  saver_.change(
      file_, [file = file_, writing](FileSteps& steps) { return write(file, *writing, steps); },
      [this, mailbox = mailbox_](const Result<>& result) {
        mailbox.post([this, result] { ended(result); });
      });
}

/// What was written is no longer a change of our own, unless it was changed again.
void ChannelKeeper::settle() {
  if (!writing_ || !writing_->done) return;
  for (const auto& [channel, record] : writing_->changes) {
    const auto change = changes_.find(channel);
    if (change != changes_.end() && change->second == record) changes_.erase(change);
  }
  bank_ = std::move(writing_->bank);
  for (const auto& [channel, record] : changes_) bank_.put(channel, record);
  writing_.reset();
  if (changes_.empty()) dropSecond();
}

void ChannelKeeper::ended(const Result<>& result) {
  settle();
  if (!result) {
    retry_ = due_ == kNever;
    if (!failing_) notes_.tell(result.reason() + ". The channels are kept and written later.");
  }
  failing_ = !result.ok();
}

}  // namespace kelvane::sondrel
