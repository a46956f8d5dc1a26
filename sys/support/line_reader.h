// Reading text files line by line into a fixed buffer: a line longer than the buffer is
// cut, and the rest of it is read and dropped, so one long line never becomes two.
#pragma once

#include <cstdio>
#include <cstring>
#include <span>

namespace wm {

// The next line of `f` without its line feed, cut to the buffer; false at end of file.
inline bool read_line(FILE *f, std::span<char> line) {
    if (line.size() < 2 || !std::fgets(line.data(), int(line.size()), f)) return false;
    size_t n = std::strlen(line.data());
    if (n && line[n - 1] == '\n') {
        line[n - 1] = '\0';
        return true;
    }
    int c;
    while ((c = std::fgetc(f)) != EOF && c != '\n') {
    }
    return true;
}

} // namespace wm
