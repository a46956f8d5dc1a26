/*
 * Interleaved wall-clock timing of whole processes: runs each command once per round, in
 * turn, for the given number of rounds, and prints each command's median in microseconds.
 * A command is "program argument input-file" (argument and input may be "-").
 */
#define _GNU_SOURCE
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char **environ;

enum { kMaxCommands = 16 };

static int cmp_double(const void *a, const void *b) {
    double x = *(const double *)a, y = *(const double *)b;
    return (x > y) - (x < y);
}

int main(int argc, char **argv) {
    if (argc < 3) {
        fprintf(stderr, "usage: %s rounds 'prog arg input'...\n", argv[0]);
        return 2;
    }
    int rounds = atoi(argv[1]);
    int commands = argc - 2;
    if (rounds < 1 || commands > kMaxCommands) return 2;
    char *prog[kMaxCommands], *arg[kMaxCommands], *input[kMaxCommands];
    for (int c = 0; c < commands; ++c) {
        prog[c] = strtok(argv[c + 2], " ");
        arg[c] = strtok(NULL, " ");
        input[c] = strtok(NULL, " ");
        if (!prog[c] || !arg[c] || !input[c]) return 2;
    }
    double *times = calloc((size_t)rounds * (size_t)commands, sizeof *times);
    if (!times) return 1;
    for (int r = 0; r < rounds; ++r) {
        for (int c = 0; c < commands; ++c) {
            posix_spawn_file_actions_t fa;
            posix_spawn_file_actions_init(&fa);
            posix_spawn_file_actions_addopen(&fa, 0, strcmp(input[c], "-") ? input[c] : "/dev/null",
                                             O_RDONLY, 0);
            posix_spawn_file_actions_addopen(&fa, 1, "/dev/null", O_WRONLY, 0);
            char *child_argv[] = {prog[c], strcmp(arg[c], "-") ? arg[c] : NULL, NULL};
            struct timespec t0, t1;
            clock_gettime(CLOCK_MONOTONIC, &t0);
            pid_t pid;
            if (posix_spawn(&pid, prog[c], &fa, NULL, child_argv, environ) != 0) return 1;
            int status;
            waitpid(pid, &status, 0);
            clock_gettime(CLOCK_MONOTONIC, &t1);
            posix_spawn_file_actions_destroy(&fa);
            times[c * rounds + r] =
                (double)(t1.tv_sec - t0.tv_sec) * 1e6 + (double)(t1.tv_nsec - t0.tv_nsec) / 1e3;
        }
    }
    for (int c = 0; c < commands; ++c) {
        qsort(times + c * rounds, (size_t)rounds, sizeof *times, cmp_double);
        printf("%.1f\n", times[c * rounds + rounds / 2]);
    }
    free(times);
    return 0;
}
