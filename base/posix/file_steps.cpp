#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "base/safe_file.h"

namespace kelvane {

namespace {

FileResult flushPath(const std::filesystem::path& path, int flags) {
  const int file = ::open(path.c_str(), flags | O_CLOEXEC);
  const bool ok = file >= 0 && ::fsync(file) == 0;
  const std::error_code error(errno, std::generic_category());
  if (file >= 0) ::close(file);
  if (ok) return {};
  return {false, systemWords(error)};
}

}  // namespace

std::string systemWords(const std::error_code& error) { return error.message(); }

FileResult FileSteps::flush(const std::filesystem::path& file) { return flushPath(file, O_WRONLY); }

FileResult FileSteps::swapIn(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error) return {false, systemWords(error)};
  // The new name is in the folder; whether the disk has it already does not change the outcome.
  const auto folder = to.has_parent_path() ? to.parent_path() : std::filesystem::path(".");
  flushPath(folder, O_RDONLY | O_DIRECTORY);
  return {};
}

}  // namespace kelvane
