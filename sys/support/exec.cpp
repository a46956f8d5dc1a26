#include "sys/support/exec.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "sys/support/raii.h"

extern char **environ;

namespace wm {
namespace {

int wait_for(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return status;
}

// Starts argv with its standard output on `out_fd` (or inherited when -1).
pid_t spawn(const char *const argv[], int out_fd) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (out_fd >= 0) posix_spawn_file_actions_adddup2(&actions, out_fd, STDOUT_FILENO);
    pid_t pid = -1;
    int rc =
        ::posix_spawnp(&pid, argv[0], &actions, nullptr, const_cast<char *const *>(argv), environ);
    posix_spawn_file_actions_destroy(&actions);
    return rc == 0 ? pid : -1;
}

} // namespace

int run_argv(const char *const argv[]) {
    std::fflush(nullptr);
    pid_t pid = spawn(argv, -1);
    return pid < 0 ? -1 : wait_for(pid);
}

int run_argv_line(const char *const argv[], std::span<char> line, bool keep_line_feed) {
    if (!line.empty()) line[0] = '\0';
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) return -1;
    UniqueFd rd(fds[0]), wr(fds[1]);
    std::fflush(nullptr);
    pid_t pid = spawn(argv, wr.get());
    wr.reset();
    if (pid < 0) return -1;
    size_t used = 0;
    bool line_done = line.empty();
    char chunk[256];
    for (;;) {
        ssize_t n = ::read(rd.get(), chunk, sizeof chunk);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        for (ssize_t i = 0; i < n && !line_done; ++i) {
            if (used + 1 >= line.size()) {
                line_done = true;
                break;
            }
            if (chunk[i] == '\n') {
                if (keep_line_feed) line[used++] = '\n';
                line_done = true;
                break;
            }
            line[used++] = chunk[i];
        }
    }
    if (!line.empty()) line[used] = '\0';
    return wait_for(pid);
}

} // namespace wm
