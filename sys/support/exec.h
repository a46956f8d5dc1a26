// Running device tools without a shell: request data reaches them only as arguments.
#pragma once

#include <span>

namespace wm {

// Runs argv[0] (looked up in PATH) with the given null-terminated argument vector and
// waits for it. Returns the wait status as system() would, or -1 when it cannot start.
int run_argv(const char *const argv[]);

// As run_argv(), and keeps the first line the tool prints on standard output (without its
// line feed) in `line`; the rest of the output is read and dropped. With `keep_line_feed`
// the line feed is kept when it fits, as fgets() keeps it.
int run_argv_line(const char *const argv[], std::span<char> line, bool keep_line_feed = false);

// Appends `command` to the command log that the marker files switch on, as do_system logs
// the commands it runs: for work done without a shell that stands for a device command.
void log_command(const char *command);

// Removes a file as the device's "rm -f <path>" through do_system did, without a shell:
// unlinked directly, and logged as that command.
void remove_file(const char *path);

} // namespace wm
