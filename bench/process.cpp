#include "bench/process.h"

#include <array>
#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

std::string readToEnd(int file) {
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t length; (length = read(file, buffer.data(), buffer.size())) > 0;)
    text.append(buffer.data(), static_cast<std::size_t>(length));
  return text;
}

// Its standard output goes to the pipe's writing end.
pid_t start(std::vector<std::string> arguments, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  pid_t child = 0;
  const int failure =
      posix_spawn(&child, arguments.front().c_str(), &actions, nullptr, pointers(arguments).data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error(arguments.front() + ": cannot be started");
  return child;
}

}  // namespace

Finished runProcess(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends;
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const auto begin = std::chrono::steady_clock::now();
  const pid_t child = start(arguments, ends[1]);
  close(ends[1]);
  Finished finished{.output = readToEnd(ends[0])};
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  finished.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error(arguments.front() + ": failed");
  return finished;
}

long peakMemoryOf(const std::vector<std::string>& arguments) {
  std::vector<std::string> measured = {ZUNO_BENCH_PEAK};
  measured.insert(measured.end(), arguments.begin(), arguments.end());
  return std::stol(runProcess(measured).output);
}

}  // namespace bench
