/*
 * login.cgi: POST username and password. Checks them against the administrator account of
 * the system record, counts failures, and on success opens a session for the client's
 * address: a 16-character token from the kernel's random source, kept by the library's
 * session table, sent as the cookie "stork" and in the JSON answer (the pages add it to
 * the query strings of their state-changing requests).
 *
 * Lock-out: every attempt is counted under an exclusive lock before its password is
 * checked, so that attempts made at the same moment cannot all be checked against one
 * count. Once LOGIN_MAX_FAILURES attempts have been counted, each less than LOGIN_WINDOW
 * seconds after the one before, logins are refused, without looking at the password,
 * until LOGIN_WINDOW seconds have passed since the attempt that reached the limit.
 * Refused attempts are counted too, so the counter shows an attack, but they keep the
 * time of that attempt: the lock cannot be prolonged forever from outside. A successful
 * login clears the count. When the count cannot be written (a full /var) the login is
 * refused: the lock-out fails closed. The count is one for the device, not per client
 * address, as on the device.
 *
 * Only the console's own pages may log in: a post from another site is refused.
 */
#define _POSIX_C_SOURCE 200809L /* strnlen, strncasecmp */

#include "cgi_common.h"

#include <errno.h>
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
/* The session lock, which the system's start-up creates: the count is read, decided on and
 * written while it is held, the same lock under which the library keeps the sessions. */
static const char kLoginLock[] = "/var/loginlock";

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
/* A digest is only ever compared with the digest of what was typed: typing the stored digest
 * itself must not log in. */
static int password_matches(const char *given, const char *stored) {
    if (!is_sha256_hex(stored)) return same_text(given, stored);
    char digest[65] = "";
    to_sha256(given, digest, sizeof digest);
    for (char *p = digest; *p; ++p)
        if (*p >= 'A' && *p <= 'F') *p = (char)(*p - 'A' + 'a');
    char lower[65];
    for (size_t i = 0; i < sizeof lower; ++i)
        lower[i] =
            (char)((stored[i] >= 'A' && stored[i] <= 'F') ? stored[i] - 'A' + 'a' : stored[i]);
    return same_text(digest, lower);
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
    if (wait > LOGIN_WINDOW) wait = LOGIN_WINDOW; /* a stamp from a clock set back */
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

/* Holds kLoginLock (blocking, whole file) until release_lock(); -1 when it cannot be had. */
static int take_lock(void) {
    char path[512];
    int fd = open(cgi_device_path(kLoginLock, path, sizeof path), O_RDWR | O_CLOEXEC);
    if (fd < 0) return -1;
    struct flock lock;
    memset(&lock, 0, sizeof lock);
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    int rc;
    do
        rc = fcntl(fd, F_SETLKW, &lock);
    while (rc < 0 && errno == EINTR);
    if (rc < 0) {
        close(fd);
        return -1;
    }
    return fd;
}

static void release_lock(int fd) {
    struct flock lock;
    memset(&lock, 0, sizeof lock);
    lock.l_type = F_UNLCK;
    lock.l_whence = SEEK_SET;
    fcntl(fd, F_SETLK, &lock);
    close(fd);
}

/* Writes the count and reads it back: 0 when the file now holds it. */
static int store_count(const char *counter, int32_t time, int32_t count) {
    save_count(counter, time, count);
    int32_t stored_time = time - 1, stored_count = count - 1;
    read_count(counter, &stored_time, &stored_count);
    return stored_time == time && stored_count == count ? 0 : -1;
}

enum attempt { ATTEMPT_CHECK, ATTEMPT_LOCKED, ATTEMPT_UNCOUNTED };

/* Counts this attempt under the lock and tells whether its password may be checked. */
static enum attempt count_attempt(const char *counter, int32_t *now, int32_t *last,
                                  int32_t *attempts) {
    int fd = take_lock();
    if (fd < 0) return ATTEMPT_UNCOUNTED;
    /* The time is taken under the lock: a process that waited for it must not stamp the
     * count with a time older than the one it finds, or find a newer stamp "old". A stamp
     * in the future (the clock set back) counts as recent: the lock-out stays. */
    *now = (int32_t)time(NULL);
    int32_t stamp = 0, count = 0;
    read_count(counter, &stamp, &count);
    if (count < 0) count = 0;
    int in_window = (int64_t)*now - stamp < LOGIN_WINDOW;
    enum attempt verdict = ATTEMPT_CHECK;
    if (count >= LOGIN_MAX_FAILURES && in_window) {
        verdict = ATTEMPT_LOCKED; /* counted, the lock's start kept */
        if (count < INT32_MAX) ++count;
    } else {
        count = count > 0 && in_window ? count + 1 : 1; /* an old run no longer counts */
        stamp = *now;
    }
    if (store_count(counter, stamp, count) != 0) verdict = ATTEMPT_UNCOUNTED;
    release_lock(fd);
    *last = stamp;
    *attempts = count;
    return verdict;
}

/* A successful login clears the count; 0 when the file holds the cleared count. */
static int clear_count(const char *counter) {
    int fd = take_lock();
    if (fd < 0) return -1;
    int rc = store_count(counter, 0, 0);
    release_lock(fd);
    return rc;
}

static int log_in(const char *counter) {
    const char *client = getenv("REMOTE_ADDR");
    if (!client || !*client) {
        cgi_reply_error(500, "the web server did not pass REMOTE_ADDR");
        return 1;
    }
    if (cgi_require_same_origin() != 0) return 0;
    int32_t now = 0, last = 0, attempts = 0;
    switch (count_attempt(counter, &now, &last, &attempts)) {
    case ATTEMPT_LOCKED:
        reply_locked(last, now);
        return 0;
    case ATTEMPT_UNCOUNTED:
        /* Without a count there is no lock-out: nobody logs in until it can be kept. */
        cgi_reply_error(503, "the login attempt could not be counted; try again later");
        return 0;
    case ATTEMPT_CHECK:
        break;
    }

    form_pair pairs[CGI_MAX_PAIRS];
    int count = cgi_read_form(pairs, CGI_MAX_PAIRS);
    const char *username = cgi_form_value(pairs, count, "username");
    const char *password = cgi_form_value(pairs, count, "password");
    int ok = username && password && credentials_match(username, password);
    cgi_free_form(pairs, count);

    if (!ok) {
        if (attempts >= LOGIN_MAX_FAILURES) {
            reply_locked(last, now);
            return 0;
        }
        cgi_begin_json(403, NULL);
        printf("{\"error\":\"Wrong user name or password.\",\"attempts_left\":%d}\n",
               (int)(LOGIN_MAX_FAILURES - attempts));
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
    if (clear_count(counter) != 0) {
        cgi_reply_error(503, "the login attempt could not be counted; try again later");
        return 0;
    }
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
