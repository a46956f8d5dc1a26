/*
 * logout.cgi: POST, from a logged-in browser. The library's session table can only end
 * every session at once (clear_token), so logging out logs out every browser; the cookie
 * is expired as well.
 */
#include "cgi_common.h"

#include <stdio.h>

int main(void) {
    if (cgi_require_post() != 0 || cgi_require_session(1) != 0) return 0;
    if (clear_token() != 0) {
        cgi_reply_error(500, "the sessions could not be ended");
        return 1;
    }
    cgi_begin_json(200, "Set-Cookie: stork=; HttpOnly; SameSite=Strict; Path=/; Max-Age=0\r\n");
    printf("{\"ok\":1}\n");
    return 0;
}
