// PROGRAM ARGUMENTS...: runs it and prints the most memory that it had resident, in kilobytes. A program of
// its own and small: Linux counts the memory of whoever starts a process as that process's.
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const pid_t child = fork();
  if (child == 0) {
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    execv(argv[1], argv + 1);
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  std::printf("%ld\n", usage.ru_maxrss);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
