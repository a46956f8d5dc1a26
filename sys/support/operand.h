// Words that come from files or requests and are handed to device tools: a process id is
// taken only as a positive decimal number, a name only when no tool could read it as an
// option, and the command log gets one line per command whatever the words hold.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace wm {

// The process id written in `text`: decimal digits only, blanks allowed around them, from
// 1 up to the largest int. 0 for anything else ("", "-1", "0", "1 2", "+5", "-s KILL -1"),
// so that no such text ever reaches kill as a process group, every process or an option.
int positive_pid(std::string_view text);

// True when `name` is one word that no tool reads as an option: not empty, not starting
// with '-', no blank or control character.
bool plain_operand(std::string_view name);

// Copies `text` for the command log: line feeds, carriage returns and the other control
// characters become "\n", "\r" and "\xHH", so the line can be neither split nor forged
// (backslashes stay as they are, so that ordinary commands log as they always did). Always
// terminates; returns the length written.
size_t log_line_text(std::span<char> out, std::string_view text);

} // namespace wm
