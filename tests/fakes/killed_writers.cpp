#include "tests/fakes/killed_writers.h"

#include <csignal>
#include <stdexcept>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace kelvane::fakes {

void KilledWriters::kill(milliseconds after) {
  const Child first = begin(0), second = begin(1);
  std::this_thread::sleep_for(after);
  end(first);
  std::this_thread::sleep_for(after / 4);
  end(second);
  ++round_;
}

KilledWriters::Child KilledWriters::begin(int which) {
  int ends[2];
  if (::pipe(ends) != 0) throw std::runtime_error("there is no pipe");
  const pid_t process = ::fork();
  if (process != 0) {
    ::close(ends[1]);
    return {process, ends[0]};
  }
  const auto tell = [pipe = ends[1]](const std::string& line) {
    if (::write(pipe, line.data(), line.size()) < 0) ::_exit(2);
  };
  try {
    writeUntilKilled(folder_.path(), which, 1'000'000 + round_ * 2000, nullptr, tell);
  } catch (...) {
    ::_exit(3);
  }
}

void KilledWriters::end(const Child& child) {
  ::kill(child.process, SIGKILL);
  int how = 0;
  ::waitpid(child.process, &how, 0);
  if (!WIFSIGNALED(how)) throw std::runtime_error("a process ended by itself");
  std::string heard;
  char piece[4096];
  for (ssize_t count; (count = ::read(child.pipe, piece, sizeof piece)) > 0;)
    heard.append(piece, static_cast<std::size_t>(count));
  ::close(child.pipe);
  files_.note(heard);
}

}  // namespace kelvane::fakes
