#include "components/sondrel/channel_keeper.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kLargestChannelFile = 4 << 20;
constexpr milliseconds kRetry{5000};

}  // namespace

ChannelKeeper::ChannelKeeper(std::filesystem::path file, FileSaver& saver, Mailbox mailbox,
                             Tell tell)
    : file_(std::move(file)), saver_(saver), mailbox_(std::move(mailbox)), tell_(std::move(tell)) {
  load();
}

ChannelKeeper::~ChannelKeeper() {
  mailbox_.close();
  if (due_ != kNever || retry_) saver_.save(file_, bank_.text());
}

void ChannelKeeper::load() {
  std::string reason;
  const auto text = readFile(file_, kLargestChannelFile, &reason);
  if (!text && reason.empty()) return;
  const auto bank = text ? ChannelBank::read(*text) : std::nullopt;
  if (bank) {
    bank_ = *bank;
    if (bank_.unread() == 0) return;
    tell_(std::to_string(bank_.unread()) + " lines of " + pathText(file_) +
          " are no channels; they stay in the file.");
    return;
  }
  const auto aside = keepAside(file_);
  tell_((reason.empty() ? pathText(file_) + " holds no channels" : reason) +
        (aside.empty() ? "; the channels are empty."
                       : "; it is kept as " + pathText(aside) + ", the channels are empty."));
}

void ChannelKeeper::put(Channel channel, const ChannelRecord& record, Instant now) {
  if (bank_.put(channel, record)) due_ = now;
}

void ChannelKeeper::tick(Instant now) {
  if (retry_) {
    retry_ = false;
    due_ = now + kRetry;
  }
  if (now >= due_) save();
}

void ChannelKeeper::save() {
  due_ = kNever;
  saver_.save(file_, bank_.text(), [this, mailbox = mailbox_](const FileResult& result) {
    mailbox.post([this, result] { ended(result); });
  });
}

void ChannelKeeper::ended(const FileResult& result) {
  if (!result) {
    retry_ = due_ == kNever;
    if (!failing_) tell_(result.reason + ". The channels are kept and written later.");
  }
  failing_ = !result.ok;
}

}  // namespace kelvane::sondrel
