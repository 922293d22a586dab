#include "desktop/shell_process.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace desktop {
namespace {

constexpr int first_descriptor = 3;  // behind the standard streams

// Everything between fork and exec may call only what is safe in a signal handler: another thread of the parent may
// have held any lock, the allocator's included, at the moment of the fork.

void reset_signals() {
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number) sigaction(number, &standard, nullptr);  // two refuse: they are standard
  sigset_t none;
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

// Has every descriptor but the standard streams closed by exec, the error pipe included: its end tells of success.
void close_on_exec() {
  if (close_range(first_descriptor, ~0U, CLOSE_RANGE_CLOEXEC) == 0) return;
  // Kernels before 5.11. Bounded: where the limit is huge, high descriptors are not in use.
  rlimit limit{};
  constexpr rlim_t most = 65536;
  const rlim_t end = getrlimit(RLIMIT_NOFILE, &limit) == 0 ? std::min(limit.rlim_cur, most) : most;
  for (int fd = first_descriptor; static_cast<rlim_t>(fd) < end; ++fd) fcntl(fd, F_SETFD, FD_CLOEXEC);
}

[[noreturn]] void fail(int report) {
  const int error = errno;
  // Fewer bytes than a pipe takes at once; if the parent is gone there is nobody to tell.
  [[maybe_unused]] const ssize_t written = write(report, &error, sizeof error);
  _exit(127);
}

[[noreturn]] void become(const char* path, char* const* arguments, const char* directory, int report) {
  reset_signals();
  if (chdir(directory) != 0 && chdir("/") != 0) fail(report);
  const int nothing = open("/dev/null", O_RDWR);
  if (nothing < 0) fail(report);
  for (int fd = 0; fd < first_descriptor; ++fd) {
    if (dup2(nothing, fd) < 0) fail(report);
  }
  close_on_exec();
  execve(path, arguments, environ);
  fail(report);
}

// The first child makes the session and a child of its own, and ends: that one belongs to nobody who must wait for it,
// and not being the session's leader it can never get a terminal.
[[noreturn]] void leave(const char* path, char* const* arguments, const char* directory, int report) {
  setsid();
  const pid_t child = fork();
  if (child < 0) fail(report);
  if (child == 0) become(path, arguments, directory, report);
  _exit(0);
}

// What the child reports before the pipe ends: an errno, or nothing.
int read_report(int pipe_end) {
  int error = 0;
  ssize_t got = 0;
  do {
    got = read(pipe_end, &error, sizeof error);
  } while (got < 0 && errno == EINTR);
  return got == sizeof error ? error : 0;
}

}  // namespace

int start_detached(const std::string& path, const std::vector<std::string>& arguments, const std::string& directory) {
  std::vector<std::string> words{path};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return errno;
  // No handler of ours may run in the child, which shares our memory's contents but none of our threads.
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const pid_t child = fork();
  const int fork_error = errno;
  if (child == 0) {
    // Out of the way of the standard streams, should this program have been started without them.
    const int safe = fcntl(report[1], F_DUPFD_CLOEXEC, first_descriptor);
    leave(path.c_str(), pointers.data(), directory.c_str(), safe < 0 ? report[1] : safe);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  close(report[1]);
  int error = fork_error;
  if (child > 0) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    error = read_report(report[0]);
  }
  close(report[0]);
  return error;
}

}  // namespace desktop
