// Template rendering helpers shared by the renderer and the fuzzer.
#pragma once

#include <cstddef>

#include "webmgmt.h"

namespace wm {

// The renderer reads at most 1023 characters per read into a line buffer of 4096 bytes;
// the rest of the buffer is room for expansions.
inline constexpr int kTemplateReadLimit = 1024;
inline constexpr size_t kTemplateLineBuffer = 4096;

// Replaces the '$' at `at` and the node's name behind it by the node's value, moving the
// rest of the line behind the value. `room` is the number of bytes from `at` to the end of
// the buffer: the result is cut to fit it.
void replace_marker(char *at, size_t room, const var_node &node);

} // namespace wm
