// Other processes: programs that are started, waited for or killed.
#pragma once

#include <array>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

extern char** environ;

namespace zuno_test {

class Process {
 public:
  explicit Process(std::vector<std::string> command) {
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0)
      throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    std::vector<char*> arguments;
    for (std::string& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const int failed = posix_spawn(&pid_, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    out_ = out[0];
    err_ = err[0];
    if (failed != 0) throw std::runtime_error("cannot start " + command.front());
  }
  Process(Process&& other) noexcept
      : pid_(std::exchange(other.pid_, 0)),
        out_(std::exchange(other.out_, -1)),
        err_(std::exchange(other.err_, -1)) {}
  Process& operator=(Process&&) = delete;
  ~Process() {
    if (pid_ > 0) {
      kill();
      wait();
    }
    if (out_ >= 0) close(out_);
    if (err_ >= 0) close(err_);
  }

  void kill() const { ::kill(pid_, SIGKILL); }
  // The exit status, -1 when it was killed.
  int wait() {
    int status = 0;
    waitpid(std::exchange(pid_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  // Until it has printed something or ended.
  void waitForOutput() const {
    char byte = 0;
    [[maybe_unused]] const ssize_t count = read(out_, &byte, 1);
  }
  std::string output() const { return readAll(out_); }
  std::string errors() const { return readAll(err_); }

 private:
  static std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;)
      text.append(buffer.data(), static_cast<std::size_t>(count));
    return text;
  }

  pid_t pid_ = 0;
  int out_ = -1;
  int err_ = -1;
};

struct Outcome {
  int status = 0;
  std::string output, errors;
};

// Runs a program to its end. What it prints must fit the pipe.
inline Outcome run(std::vector<std::string> command) {
  Process process(std::move(command));
  std::string output = process.output();
  std::string errors = process.errors();
  return {.status = process.wait(), .output = std::move(output), .errors = std::move(errors)};
}

}  // namespace zuno_test
