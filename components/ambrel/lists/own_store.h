#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "base/safe_file.h"
#include "base/work_beside.h"
#include "components/ambrel/lists/own_list.h"

namespace kelvane::lists {

/// The operator's own list and its file. Reading and writing run on a thread of their own, one
/// after the other; deliver() takes over what came of them. Other processes may change the file:
/// what they added and removed stays so. All calls come on the user-interface thread.
class OwnStore {
 public:
  explicit OwnStore(std::filesystem::path file,
                    std::shared_ptr<FileSteps> disk = std::make_shared<FileSteps>(),
                    std::function<void()> wake = {});
  /// Returns when what was edited is in the file, or could not be put there.
  ~OwnStore();
  OwnStore(const OwnStore&) = delete;
  OwnStore& operator=(const OwnStore&) = delete;

  OwnList& list() { return list_; }
  const OwnList& list() const { return list_; }
  const std::filesystem::path& file() const { return file_; }
  /// The list is that of the file; before, it must not be edited.
  bool ready() const { return ready_; }
  bool busy() const { return beside_.busy(); }
  /// Whether the list could be read or written the last time.
  const Result<>& lastAccess() const { return lastAccess_; }
  /// Something was edited that the file does not hold.
  bool unsaved() const { return ready_ && list_.version() != written_; }
  /// Lines of the file that are no stations, in words; mostly empty.
  const std::string& unread() const { return unread_; }

  /// Reads the file where it is not what was last read or written.
  void read();
  /// Takes over what has ended, and writes what was edited. Answers whether anything that is shown
  /// may have changed. To be called when `wake` asks
  /// for it, from any thread, and after edits.
  bool deliver();
  /// Returns when the file holds what was edited, or cannot.
  void finish();

  /// Hears, inside deliver(), that the file has other contents now.
  std::function<void()> changed;

 private:
  struct Outcome {
    Result<> how;
    OwnText text;
    std::size_t mark = 0;
    bool other = false;  ///< another program changed the file
    bool wrote = false;
  };

  void start(const std::string& what, std::function<Outcome()> job);
  void write();
  void take(Outcome outcome);
  static std::string unreadWords(const OwnText& text);

  std::filesystem::path file_;
  std::shared_ptr<FileSteps> disk_;
  OwnList list_;
  std::shared_ptr<const OwnText> base_ = std::make_shared<const OwnText>();
  std::shared_ptr<const OwnText> underWay_;  ///< what is being written, or stood there before
  std::size_t mark_ = 0;                     ///< of the content that `base_` was read from
  std::uint64_t written_ = 0, writing_ = 0;  ///< versions of the list
  bool ready_ = false;
  bool refused_ = false;  ///< the last write failed: not tried again before another edit
  Result<> lastAccess_;
  std::string unread_;
  WorkBeside beside_;
};

}  // namespace kelvane::lists
