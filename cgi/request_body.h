// Reading a POST body of CONTENT_LENGTH bytes from standard input; shared by the form
// decoder and the upload readers.
#pragma once

#include <cstddef>

namespace wm {

// True when REQUEST_METHOD is set and is not GET (in any case).
bool request_is_post();

// True when REQUEST_METHOD is set and is GET (in any case).
bool request_is_get();

// CONTENT_LENGTH as atoi reads it; -1 when the variable is unset.
long request_content_length();

// Reads exactly `length` bytes from standard input into a heap buffer of
// length + 1 + extra_front bytes, placing the body after `extra_front` bytes and a NUL
// behind it. Null on allocation failure or short read.
char *read_stdin_body(size_t length, size_t extra_front = 0);

} // namespace wm
