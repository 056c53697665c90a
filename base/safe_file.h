#pragma once

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/result.h"
#include "base/time.h"

namespace kelvane {

/// What came of reading a file: more than done or not, since a file that is missing, too large or
/// unreadable now asks for different things.
struct FileReading {
  enum How {
    Whole,       ///< `content` is all of it
    Missing,     ///< there is no such file
    TooLarge,    ///< larger than the caller takes
    Unreadable,  ///< it is there, and cannot be opened or read now: that says nothing about it
  };
  How how = Missing;
  std::string content = {};
  std::string reason = {};  ///< in words, for the last two
  bool held = false;        ///< as in Failure
};

/// The operations on the disk of which reading and safe writing consist; a failure's reason is the
/// system's own words. A test puts its own in between to fail or stop the program at each of them.
class FileSteps {
 public:
  virtual ~FileSteps() = default;
  /// One try to read a file of at most `limit` bytes.
  virtual FileReading read(const std::filesystem::path& file, std::size_t limit);
  virtual Result<> makeFolders(const std::filesystem::path& folder);
  /// Writes a new file, replacing one of that name.
  virtual Result<> write(const std::filesystem::path& file, std::string_view content);
  /// Writes behind what is in a file; makes the file where there is none.
  virtual Result<> append(const std::filesystem::path& file, std::string_view content);
  /// Returns when the file's content is on the disk and no longer in a buffer.
  virtual Result<> flush(const std::filesystem::path& file);
  /// Gives `from` the name of `to` in one step; a file that had the name is gone then.
  virtual Result<> swapIn(const std::filesystem::path& from, const std::filesystem::path& to);
  /// Gives the content of `from` a second name; a file that had that name is gone then.
  virtual Result<> secondName(const std::filesystem::path& from, const std::filesystem::path& to);
  virtual void remove(const std::filesystem::path& file);
  /// Waits before the next try of a step that another program holds up.
  virtual void pause(milliseconds time);
};

/// For how long a file that another program holds is tried again, and the longest pause between two
/// tries. Scanners, indexers and backups let go long before.
inline constexpr milliseconds kFileRetryTime{1500};
inline constexpr milliseconds kFilePause{50};

inline bool isHeld(const FileReading& reading) { return reading.held; }
inline bool isHeld(const Result<>& result) { return result.held(); }

/// Tries something with a file again for as long as another program holds it, at most for
/// kFileRetryTime. Not for a thread that a window waits for.
template <class Try>
auto retryWhileHeld(FileSteps& steps, Try attempt) {
  auto result = attempt();
  milliseconds waited{0};
  for (milliseconds next{2}; isHeld(result) && waited < kFileRetryTime; waited += next) {
    next = std::min(next * 2, kFilePause);
    steps.pause(next);
    result = attempt();
  }
  return result;
}

/// Replaces a file's content: written beside it, flushed to the disk, and swapped in, so that a
/// crash at any moment leaves the old or the new file whole. Makes missing folders. A step that
/// another program holds up is tried again, `retryWhileHeld`. After a failure the old file is as it
/// was.
Result<> writeFileSafely(const std::filesystem::path& path, std::string_view content);
Result<> writeFileSafely(const std::filesystem::path& path, std::string_view content,
                         FileSteps& steps);
/// `beforeSwap` runs when the new content is on the disk and the old file still has its name; when
/// it fails nothing is swapped.
Result<> writeFileSafely(const std::filesystem::path& path, std::string_view content,
                         FileSteps& steps, const std::function<Result<>()>& beforeSwap);

/// What FileSteps::read answers for a file that is larger than `limit` bytes.
FileReading tooLargeToRead(const std::filesystem::path& path, std::size_t limit);

/// Reads a file that another program may hold for a moment. Waits, as `retryWhileHeld` does.
FileReading readWhenFree(const std::filesystem::path& path, std::size_t limit, FileSteps& steps);

/// The whole content of a file, at most `limit` bytes; none when it cannot be opened or read, or is
/// larger. One try, and no wait.
std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t limit);

/// Whether this is the whole content of a file. Needs no memory for it.
bool hasContent(const std::filesystem::path& path, std::string_view content);

/// Moves a damaged file aside under a name of its own beside it, and answers that name; empty when
/// it could not be moved.
std::filesystem::path keepAside(const std::filesystem::path& path);

/// What the system says about an error, UTF-8.
std::string systemWords(const std::error_code& error);

/// The path as UTF-8 text, for messages.
std::string pathText(const std::filesystem::path& path);

/// The path that a UTF-8 text names; bytes that are no UTF-8 become "_".
std::filesystem::path pathFromText(std::string_view text);

}  // namespace kelvane
