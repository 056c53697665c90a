#include "base/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

namespace kelvane {

namespace {

/// The words of a line, those in quotes whole.
std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  bool quoted = false;
  bool inWord = false;
  for (const char c : line) {
    const bool between = !quoted && (c == ' ' || c == '\t');
    if (!between && !inWord) words.emplace_back();
    inWord = !between;
    if (c == '"') {
      quoted = !quoted;
    } else if (!between) {
      words.back() += c;
    }
  }
  return words;
}

/// What the child does before it becomes the program. Other threads may have held locks when it was
/// forked, so it calls nothing but the system.
[[noreturn]] void become(char* const* words, int report, int written) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = ::open("/dev/null", O_RDWR);
  for (int stream = 0; stream < 3; ++stream)
    ::dup2(stream > 0 && written >= 0 ? written : nowhere, stream);
  ::execvp(words[0], words);
  const int error = errno;
  [[maybe_unused]] const auto told = ::write(report, &error, sizeof error);
  ::_exit(127);
}

}  // namespace

struct ChildProcess::Native {
  pid_t process = 0;
  int written = -1;  ///< the reading end of its streams

  void closeWritten() {
    if (written >= 0) ::close(written);
    written = -1;
  }
  /// Opens the pipe of its streams and answers the writing end; -1 where there is none.
  int openWritten() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return -1;
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    written = ends[0];
    return ends[1];
  }
};

ChildProcess::ChildProcess() : native_(std::make_unique<Native>()) {}

ChildProcess::~ChildProcess() {
  end();
  native_->closeWritten();
}

Result<> ChildProcess::start(const std::string& line, Written written) {
  end();
  native_->closeWritten();
  auto words = wordsOf(line);
  if (words.empty()) return Failure{"There is no program to start."};
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  int report[2];
  if (::pipe2(report, O_CLOEXEC) != 0) return Failure{std::generic_category().message(errno)};
  const int streams = written == Written::Kept ? native_->openWritten() : -1;
  const pid_t process = ::fork();
  if (process == 0) become(arguments.data(), report[1], streams);
  if (streams >= 0) ::close(streams);
  int error = process < 0 ? errno : 0;
  ::close(report[1]);
  // The pipe closes by itself when the program begins, and says why where it does not.
  if (process > 0 && ::read(report[0], &error, sizeof error) < 0) error = errno;
  ::close(report[0]);
  if (error == 0) {
    native_->process = process;
    return {};
  }
  if (process > 0) ::waitpid(process, nullptr, 0);
  return Failure{std::generic_category().message(error) + "."};
}

void ChildProcess::end() {
  if (native_->process == 0) return;
  ::kill(native_->process, SIGKILL);
  ::waitpid(native_->process, nullptr, 0);
  native_->process = 0;
}

bool ChildProcess::running() {
  if (native_->process == 0) return false;
  if (::waitpid(native_->process, nullptr, WNOHANG) == 0) return true;
  native_->process = 0;
  return false;
}

std::string ChildProcess::takeWritten() {
  std::string text;
  char bytes[4096];
  ssize_t count = 0;
  while (native_->written >= 0 && (count = ::read(native_->written, bytes, sizeof bytes)) > 0)
    text.append(bytes, static_cast<std::size_t>(count));
  return text;
}

}  // namespace kelvane
