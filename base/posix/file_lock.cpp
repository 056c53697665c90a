#include "base/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace kelvane {

namespace {

Failure refusal(int code) {
  const bool held = code == EWOULDBLOCK || code == EINTR;
  return {held ? "another program is writing it" : systemWords({code, std::generic_category()}),
          held};
}

/// Whether the name still stands for the open file: its last owner takes the name away.
bool stillNamed(int handle, const std::filesystem::path& file) {
  struct stat open {
  }, named{};
  return ::fstat(handle, &open) == 0 && ::stat(file.c_str(), &named) == 0 &&
         open.st_ino == named.st_ino;
}

}  // namespace

Result<> FileLock::acquire(const std::filesystem::path& file) {
  release();
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
  for (;;) {
    const int handle = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (handle < 0) return refusal(errno);
    if (::flock(handle, LOCK_EX | LOCK_NB) != 0) {
      const int code = errno;
      ::close(handle);
      return refusal(code);
    }
    if (stillNamed(handle, file)) {
      handle_ = handle;
      file_ = file;
      return {};
    }
    ::close(handle);
  }
}

void FileLock::release() {
  if (!owned()) return;
  ::unlink(file_.c_str());
  ::close(static_cast<int>(handle_));
  handle_ = kNone;
}

}  // namespace kelvane
