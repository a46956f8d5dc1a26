/*
 * login.cgi: POST username and password. Checks them against the administrator account of
 * the system record, counts failures, and on success opens a session for the client's
 * address: a 16-character token from the kernel's random source, kept by the library's
 * session table, sent as the cookie "stork" and in the JSON answer (the pages add it to
 * the query strings of their state-changing requests).
 *
 * Lock-out: after LOGIN_MAX_FAILURES failed logins, each less than LOGIN_WINDOW seconds
 * after the one before, logins are refused until LOGIN_WINDOW seconds have passed since
 * the last failure. Refused attempts are not counted (so the lock cannot be prolonged
 * forever from outside); a successful login clears the count. The count is one for the
 * device, not per client address, as on the device.
 */
#define _POSIX_C_SOURCE 200809L /* strnlen, strncasecmp */

#include "cgi_common.h"

#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <time.h>
#include <unistd.h>

enum { LOGIN_MAX_FAILURES = 5, LOGIN_WINDOW = 300, TOKEN_LENGTH = 16 };

static const char kFailureCounter[] = "/var/loginfail";

/* 16 alphanumerics from /dev/urandom; bytes of 248 and above are dropped so that each of
 * the 62 characters is equally likely. */
static int make_token(char token[TOKEN_LENGTH + 1]) {
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    int fd = open("/dev/urandom", O_RDONLY | O_CLOEXEC);
    if (fd < 0) return -1;
    int filled = 0;
    while (filled < TOKEN_LENGTH) {
        unsigned char bytes[32];
        ssize_t n = read(fd, bytes, sizeof bytes);
        if (n <= 0) {
            close(fd);
            return -1;
        }
        for (ssize_t i = 0; i < n && filled < TOKEN_LENGTH; ++i)
            if (bytes[i] < 248) token[filled++] = alphabet[bytes[i] % 62];
    }
    close(fd);
    token[TOKEN_LENGTH] = '\0';
    return 0;
}

/* Compares without stopping at the first difference. */
static int same_text(const char *a, const char *b) {
    size_t la = strlen(a), lb = strlen(b);
    unsigned diff = (unsigned)(la ^ lb);
    for (size_t i = 0; i < la && i < lb; ++i)
        diff |= (unsigned)(a[i] ^ b[i]);
    return diff == 0;
}

static int is_sha256_hex(const char *text) {
    if (strlen(text) != 64) return 0;
    for (const char *p = text; *p; ++p)
        if (!strchr("0123456789abcdefABCDEF", *p)) return 0;
    return 1;
}

/* The stored password is clear text, or its SHA-256 digest once it has been hashed. */
static int password_matches(const char *given, const char *stored) {
    if (same_text(given, stored)) return 1;
    if (!is_sha256_hex(stored)) return 0;
    char digest[65] = "";
    to_sha256(given, digest, sizeof digest);
    return strncasecmp(digest, stored, 64) == 0;
}

/* A text member of a record, which may fill its array with no terminator. */
static void member_text(char *out, const char *member, size_t member_size) {
    size_t len = strnlen(member, member_size);
    memcpy(out, member, len);
    out[len] = '\0';
}

static void reply_locked(int32_t last_failure, int32_t now) {
    int32_t wait = LOGIN_WINDOW - (now - last_failure);
    if (wait < 1) wait = 1;
    cgi_begin_json(429, NULL);
    printf("{\"error\":\"Too many failed logins. Try again in %d seconds.\",\"locked\":1,"
           "\"retry_after\":%d}\n",
           (int)wait, (int)wait);
}

static int credentials_match(const char *username, const char *password) {
    const misc_config *misc = SC_Get_Misc_System_Config();
    if (!misc) return 0;
    char rootname[sizeof misc->sys_user.rootname + 1];
    char rootpwd[sizeof misc->sys_user.rootpwd + 1];
    member_text(rootname, misc->sys_user.rootname, sizeof misc->sys_user.rootname);
    member_text(rootpwd, misc->sys_user.rootpwd, sizeof misc->sys_user.rootpwd);
    if (!rootname[0]) return 0; /* no administrator account: nobody logs in */
    int user_ok = same_text(username, rootname);
    int password_ok = password_matches(password, rootpwd);
    return user_ok && password_ok;
}

static int log_in(const char *counter) {
    const char *client = getenv("REMOTE_ADDR");
    if (!client || !*client) {
        cgi_reply_error(500, "the web server did not pass REMOTE_ADDR");
        return 1;
    }
    int32_t now = (int32_t)time(NULL);
    int32_t last_failure = 0, failures = 0;
    read_count(counter, &last_failure, &failures);
    int in_window = now - last_failure < LOGIN_WINDOW;
    if (failures >= LOGIN_MAX_FAILURES && in_window) {
        reply_locked(last_failure, now);
        return 0;
    }

    form_pair pairs[CGI_MAX_PAIRS];
    int count = cgi_read_form(pairs, CGI_MAX_PAIRS);
    const char *username = cgi_form_value(pairs, count, "username");
    const char *password = cgi_form_value(pairs, count, "password");
    int ok = username && password && credentials_match(username, password);
    cgi_free_form(pairs, count);

    if (!ok) {
        if (failures > 0 && !in_window)
            save_count(counter, now, 1); /* an old run of failures no longer counts */
        else
            login_add(counter);
        read_count(counter, &last_failure, &failures);
        if (failures >= LOGIN_MAX_FAILURES) {
            reply_locked(last_failure, now);
            return 0;
        }
        cgi_begin_json(403, NULL);
        printf("{\"error\":\"Wrong user name or password.\",\"attempts_left\":%d}\n",
               (int)(LOGIN_MAX_FAILURES - failures));
        return 0;
    }

    char token[TOKEN_LENGTH + 1];
    if (make_token(token) != 0) {
        cgi_reply_error(500, "no random source");
        return 1;
    }
    if (generate_token2save(client, token) != 0) {
        cgi_reply_error(500, "the session could not be stored");
        return 1;
    }
    save_count(counter, 0, 0);
    char cookie[128];
    snprintf(cookie, sizeof cookie, "Set-Cookie: stork=%s; HttpOnly; SameSite=Strict; Path=/\r\n",
             token);
    cgi_begin_json(200, cookie);
    printf("{\"ok\":1,\"token\":\"%s\"}\n", token);
    return 0;
}
int main(void) {
    if (cgi_require_post() != 0) return 0;
    char counter[512];
    return log_in(cgi_device_path(kFailureCounter, counter, sizeof counter));
}
