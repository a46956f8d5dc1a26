// Writing the session table with a result, for the callers that must know it was stored.
#pragma once

#include "webmgmt.h"

namespace wm {

// save_token() that tells: true when every live session is in the file.
bool write_token_file(const char *path, const token_list *list);

} // namespace wm
