// Splitting a multipart/form-data body that is already in memory; shared by the in-memory
// reader and the streaming writer.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace wm {

// First occurrence of `pattern` in `bytes`, binary-safe; null when absent or empty.
const char *find_bytes(std::span<const char> bytes, std::string_view pattern);

// What follows "key<sep>" up to the line end in [*pos, limit), double quotes left out and
// cut to fit `dst`; *pos moves to the CR or LF ending the line. False (nothing changed)
// when the key is absent or not followed by `sep`.
bool extract_header(char **pos, const char *limit, std::string_view key, char sep,
                    std::span<char> dst);

} // namespace wm
