// The kernel's MAC-binding interface, /proc/mac: one line per write, the station's MAC
// alone to bind it, the MAC and eleven dashes to unbind it.
#pragma once

#include <string_view>

namespace wm {

// Six two-digit hexadecimal groups joined by colons, in either case.
bool is_mac_text(std::string_view text);

// Writes the MAC's line to /proc/mac as the device's `echo "<line>" >/proc/mac` did, without
// a shell; with `logged` (the command went through do_system) that command is logged when
// the command log is on. A text that is not a MAC writes nothing. False when nothing was
// written.
bool write_proc_mac(std::string_view mac, bool bound, bool logged);

} // namespace wm
