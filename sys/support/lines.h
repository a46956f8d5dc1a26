// Reading a text file one bounded line at a time.
#pragma once

#include <cstdio>
#include <cstring>
#include <span>

namespace wm {

// Reads the next line of `f` into `line` without its line feed. A line longer than the
// buffer is cut, and the rest of it is skipped rather than read as a line of its own.
// False at the end of the file.
inline bool next_line(std::FILE *f, std::span<char> line) {
    if (line.size() < 2 || !std::fgets(line.data(), int(line.size()), f)) return false;
    size_t n = std::strlen(line.data());
    if (n && line[n - 1] == '\n') {
        line[n - 1] = '\0';
        return true;
    }
    for (int c = std::getc(f); c != EOF && c != '\n'; c = std::getc(f)) {
    }
    return true;
}

} // namespace wm
