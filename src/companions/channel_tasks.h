#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/replaced_file.h"
#include "base/safe_file.h"
#include "base/work_beside.h"
#include "companions/channel_file.h"
#include "companions/channel_table.h"

namespace kelvane {

/// A channel file's content, UTF-8: a line for each channel.
std::string channelFile(const ChannelRows& rows, SettingNames& modes, SettingNames& agc);

/// A piece of work of the channel window that takes its time. It is done in short steps, between
/// which the window lives on; dropped at any moment, it leaves nothing half done.
class ChannelTask {
 public:
  virtual ~ChannelTask() = default;
  /// Does a part of the work. Answers whether there is more.
  virtual bool step() = 0;
  /// What it is doing, and in the end what came of it.
  virtual const std::string& words() const { return words_; }
  virtual bool failed() const { return false; }
  /// What is to be shown in a message at its end; empty for nothing.
  virtual const std::string& message() const { return message_; }
  /// Its next step is due when work beside the window has ended, and not before.
  virtual bool waits() const { return false; }
  /// What becomes of it when the program ends.
  enum class AtEnd { Dropped, Done, Waited };
  virtual AtEnd atEnd() const { return AtEnd::Dropped; }
  /// What the file holds that it writes.
  virtual std::string content() const { return {}; }

 protected:
  std::string words_;
  std::string message_;
};

/// Sends the modified channels to the receiver.
class SaveTask : public ChannelTask {
 public:
  SaveTask(ReceiverComponent& component, ChannelTable& table);
  bool step() override;
  AtEnd atEnd() const override { return AtEnd::Done; }

 private:
  bool send(Channel channel);
  void finish();

  ReceiverComponent& component_;
  ChannelTable& table_;
  std::vector<Channel> channels_;
  std::size_t done_ = 0;
  Count unreported_ = 0;
  std::vector<Channel> refused_;
};

/// Erases every channel on the receiver.
class ClearTask : public ChannelTask {
 public:
  /// `kept` says where the channels are kept, in words.
  ClearTask(ReceiverComponent& component, const ChannelTable& table, std::string kept);
  bool step() override;

 private:
  ReceiverComponent& component_;
  const ChannelTable& table_;
  std::string kept_;
  Channel next_ = 0;
  std::vector<Channel> refused_;
};

/// Writes a file, and says that it is there.
class WriteTask : public ChannelTask {
 public:
  /// The file is written beside the window, by the steps of `disk`.
  /// @param replaced the file that made way for this one, if there was one
  WriteTask(WorkBeside& beside, const std::shared_ptr<FileSteps>& disk,
            const std::filesystem::path& path, std::string content, std::string done,
            std::shared_ptr<ReplacedFile> replaced = {});
  bool step() override;
  bool failed() const override { return *result_ && !(*result_)->ok(); }
  bool waits() const override { return true; }
  AtEnd atEnd() const override { return AtEnd::Waited; }
  std::string content() const override { return *content_; }

 private:
  std::shared_ptr<const std::string> content_;
  std::string done_;
  /// Empty until the file is written; kept by the work as well, which may outlast the task.
  std::shared_ptr<std::optional<Result<>>> result_;
};

/// Reads a channel file into the working table.
class ImportTask : public ChannelTask {
 public:
  ImportTask(const std::filesystem::path& path, ChannelTable& table);
  /// What was read so far is in the table, also when the work is dropped.
  ~ImportTask() override;
  bool step() override;
  bool failed() const override { return !message_.empty(); }

 private:
  bool take(std::string_view line);
  bool store(const ChannelLine& line);
  void finish();
  std::string decoded(std::string_view bytes) const;

  std::string file_;
  std::ifstream in_;
  ChannelTable& table_;
  LineCutter lines_;
  std::vector<char> buffer_;
  ChannelRows rows_;
  std::int64_t line_ = 0, skipped_ = 0, unknown_ = 0;
  bool utf8_ = false;    ///< the file says that it is
  std::string stopped_;  ///< why it ended before the file did, where that is no message
};

}  // namespace kelvane
