#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include "stage/xserver.h"

namespace stage {
namespace {

using Clock = std::chrono::steady_clock;
// How long a condition rests between two looks at it, and a process has to end when it is asked to.
constexpr auto look_interval = std::chrono::milliseconds(1);
constexpr int end_limit_ms = 5000;

std::vector<char*> pointers_to(const std::vector<std::string>& strings) {
  std::vector<char*> pointers;
  pointers.reserve(strings.size() + 1);
  for (const std::string& string : strings) pointers.push_back(const_cast<char*>(string.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> environment_with(const std::vector<std::string>& added) {
  std::vector<std::string> all = added;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string variable = *entry;
    const std::string name = variable.substr(0, variable.find('=') + 1);
    bool replaced = false;
    for (const std::string& other : added) replaced |= other.starts_with(name);
    if (!replaced) all.push_back(variable);
  }
  return all;
}

}  // namespace

bool eventually(const std::function<bool()>& condition, int deadline_ms) {
  const auto deadline = Clock::now() + std::chrono::milliseconds(deadline_ms);
  while (!condition()) {
    if (Clock::now() >= deadline) return condition();
    std::this_thread::sleep_for(look_interval);
  }
  return true;
}

Process::Process(const std::vector<std::string>& argv, const std::vector<std::string>& environment, bool piped) {
  std::array<int, 2> in{-1, -1};
  std::array<int, 2> out{-1, -1};
  if (piped && (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)) return;
  const std::vector<std::string> variables = environment_with(environment);
  const std::vector<char*> arguments = pointers_to(argv);
  const std::vector<char*> entries = pointers_to(variables);
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) _exit(1);
    if (piped) {
      dup2(in[0], STDIN_FILENO);
      dup2(out[1], STDOUT_FILENO);
    }
    execvpe(arguments[0], arguments.data(), entries.data());
    _exit(127);
  }
  if (!piped) return;
  close(in[0]);
  close(out[1]);
  input_ = in[1];
  output_ = out[0];
}

Process::~Process() {
  end();
  if (input_ >= 0) close(input_);
  if (output_ >= 0) close(output_);
}

bool Process::running() {
  if (pid_ <= 0) return false;
  if (waitpid(pid_, &status_, WNOHANG) == 0) return true;
  pid_ = -1;
  return false;
}

int Process::wait(int deadline_ms) {
  return eventually([this] { return !running(); }, deadline_ms) ? status_ : -1;
}

void Process::signal(int number) const {
  if (pid_ > 0) ::kill(pid_, number);
}

void Process::end() {
  signal(SIGTERM);
  signal(SIGCONT);
  if (eventually([this] { return !running(); }, end_limit_ms)) return;
  signal(SIGKILL);
  wait();
}

void Process::write_line(const std::string& line) const {
  const std::string whole = line + "\n";
  [[maybe_unused]] const ssize_t written = ::write(input_, whole.data(), whole.size());
}

std::string Process::read_line(int deadline_ms) {
  const auto deadline = Clock::now() + std::chrono::milliseconds(deadline_ms);
  for (;;) {
    const std::size_t end = buffered_.find('\n');
    if (end != std::string::npos) {
      std::string line = buffered_.substr(0, end);
      buffered_.erase(0, end + 1);
      return line;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd wait{output_, POLLIN, 0};
    if (left <= 0 || poll(&wait, 1, static_cast<int>(left)) <= 0) return {};
    std::array<char, 4096> block{};
    const ssize_t size = ::read(output_, block.data(), block.size());
    if (size <= 0) return {};
    buffered_.append(block.data(), static_cast<std::size_t>(size));
  }
}

void Process::swap(Process& other) noexcept {
  std::swap(pid_, other.pid_);
  std::swap(status_, other.status_);
  std::swap(input_, other.input_);
  std::swap(output_, other.output_);
  std::swap(buffered_, other.buffered_);
}

}  // namespace stage
