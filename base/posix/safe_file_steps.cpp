#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include "base/safe_file.h"

namespace kelvane {

namespace {

Result<> flushPath(const std::filesystem::path& path, int flags) {
  const int file = ::open(path.c_str(), flags | O_CLOEXEC);
  const bool ok = file >= 0 && ::fsync(file) == 0;
  const std::error_code error(errno, std::generic_category());
  if (file >= 0) ::close(file);
  if (ok) return {};
  return Failure{systemWords(error)};
}

FileReading unreadable(const std::filesystem::path& path, int code) {
  const std::string words = systemWords({code, std::generic_category()});
  return {FileReading::Unreadable, {}, "Cannot read " + pathText(path) + ": " + words};
}

/// Closes a file at the end of its life, however that comes.
struct OpenFile {
  int number;
  ~OpenFile() {
    if (number >= 0) ::close(number);
  }
};

FileReading readOpen(int file, const struct stat& facts, std::size_t limit,
                     const std::filesystem::path& path) {
  if (!S_ISREG(facts.st_mode))
    return {FileReading::Unreadable, {}, pathText(path) + " is not a file"};
  const auto size = static_cast<std::size_t>(facts.st_size);
  if (size > limit) return tooLargeToRead(path, limit);
  // One byte more, to see the file's end; it may have grown meanwhile.
  FileReading reading{FileReading::Whole, std::string(size + 1, '\0')};
  std::size_t filled = 0;
  for (ssize_t count = 1; count > 0;
       filled += static_cast<std::size_t>(std::max<ssize_t>(count, 0))) {
    if (filled == reading.content.size()) reading.content.resize(filled * 2);
    count = ::read(file, reading.content.data() + filled, reading.content.size() - filled);
    if (count < 0) return unreadable(path, errno);
    if (filled + static_cast<std::size_t>(count) > limit) return tooLargeToRead(path, limit);
  }
  reading.content.resize(filled);
  return reading;
}

}  // namespace

std::string systemWords(const std::error_code& error) { return error.message(); }

FileReading FileSteps::read(const std::filesystem::path& path, std::size_t limit) {
  const OpenFile open{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
  const int file = open.number;
  if (file < 0 && (errno == ENOENT || errno == ENOTDIR)) return {FileReading::Missing};
  struct stat facts {};
  const bool known = file >= 0 && ::fstat(file, &facts) == 0;
  return known ? readOpen(file, facts, limit, path) : unreadable(path, errno);
}

Result<> FileSteps::flush(const std::filesystem::path& file) { return flushPath(file, O_WRONLY); }

Result<> FileSteps::swapIn(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error) return Failure{systemWords(error)};
  // The new name is in the folder; whether the disk has it already does not change the outcome.
  const auto folder = to.has_parent_path() ? to.parent_path() : std::filesystem::path(".");
  flushPath(folder, O_RDONLY | O_DIRECTORY);
  return {};
}

}  // namespace kelvane
