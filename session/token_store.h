// The session file: its text read in one piece, the table parsed from it, and the table
// written back, for the session calls that need more than the public loader and saver.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "webmgmt.h"

namespace wm {

// The file's text as read: room for the six lines of at most 99 bytes the loader looks at,
// and more than the table's five lines can ever take when written.
struct TokenText {
    char bytes[600];
    size_t size = 0;
    bool present = false; // the file could be opened
    std::string_view view() const { return {bytes, size}; }
};
void read_token_text(const char *path, TokenText &text);

// The table as initial_tokenlist() loads it from `text`.
void parse_token_text(std::string_view text, token_list &list);

// The file's text for the live sessions of `list`: "%s %s %d\n" each. Returns the length.
inline constexpr size_t kTokenTextMax = WEBMGMT_TOKEN_SLOTS * (2 * WEBMGMT_TOKEN_TEXT_SIZE + 14);
size_t format_token_text(const token_list &list, std::span<char, kTokenTextMax> out);

// save_token() that tells: true when every live session is in the file.
bool write_token_file(const char *path, const token_list *list);

} // namespace wm
