#pragma once

#include <atomic>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/file_saver.h"
#include "base/replaced_file.h"
#include "base/time.h"
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
  /// How long to wait before the next step.
  virtual milliseconds pause() const { return milliseconds(0); }

 protected:
  std::string words_;
};

/// Sends the modified channels to the receiver.
class SaveTask : public ChannelTask {
 public:
  SaveTask(ReceiverComponent& component, ChannelTable& table);
  bool step() override;

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
  /// @param replaced the file that made way for this one, if there was one
  WriteTask(FileSaver& saver, const std::filesystem::path& path, std::string content,
            std::string done, std::shared_ptr<ReplacedFile> replaced = {});
  bool step() override;
  bool failed() const override { return !state_->result.ok(); }
  milliseconds pause() const override { return milliseconds(20); }
  const std::string& content() const { return content_; }

 private:
  struct State {
    std::atomic<bool> ended{false};
    Result<> result;  ///< the saver's until it has ended
  };

  std::string content_;
  std::string done_;
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// Reads a channel file into the working table.
class ImportTask : public ChannelTask {
 public:
  ImportTask(const std::filesystem::path& path, ChannelTable& table);
  /// What was read so far is in the table, also when the work is dropped.
  ~ImportTask() override;
  bool step() override;
  bool failed() const override { return !problem_.empty(); }
  /// What is wrong with the line that stopped it, for a message; empty where none did.
  const std::string& problem() const { return problem_; }

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
  bool utf8_ = false;  ///< the file says that it is
  std::string problem_;
  std::string stopped_;  ///< why it ended before the file did, where that is no message
};

}  // namespace kelvane
