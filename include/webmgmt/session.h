/*
 * webmgmt: login sessions (the token table), the login attempt counter and password
 * hashing.
 */
#ifndef WEBMGMT_SESSION_H
#define WEBMGMT_SESSION_H

#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/wireless.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Session tokens, login lock-out and password hashing                                   */
/* ===================================================================================== */

/* Number of login sessions the session file keeps, one per client address. */
#define WEBMGMT_TOKEN_SLOTS 5
#define WEBMGMT_TOKEN_TEXT_SIZE 50

/* One login session slot. */
typedef struct token_record {
    char client_ip[WEBMGMT_TOKEN_TEXT_SIZE]; /* REMOTE_ADDR text; at most 49 characters */
    char token[WEBMGMT_TOKEN_TEXT_SIZE];     /* as the login program issued it */
    int32_t in_use;                          /* 1 = live session, 0 = free */
    int32_t last_used;                       /* seconds since the epoch */
} token_record;
WEBMGMT_STATIC_ASSERT(sizeof(token_record) == 108, "token_record layout");

/* The session table. `count` is the number of lines the loader read; `spare` receives a
 * sixth line of the file and is otherwise never looked at. */
typedef struct token_list {
    int32_t count;
    token_record slot[WEBMGMT_TOKEN_SLOTS];
    token_record spare;
} token_list;
WEBMGMT_STATIC_ASSERT(sizeof(token_list) == 652, "token_list layout");

/* fcntl record lock of `length` bytes from `start`. `command` may be the device's 64-bit
 * lock commands (12 to 14), the classic ones (5 to 7) or the open-file-description ones. */
WEBMGMT_API int lock_reg(int fd, int command, int type, int64_t start, int whence, int64_t length);
WEBMGMT_API void initial_tokenlist(const char *path, token_list *list);
WEBMGMT_API int find_tokenbyclientip(const char *client_ip, const token_list *list);
WEBMGMT_API void insert_token(const char *client_ip, const char *token, token_list *list);
WEBMGMT_API void save_token(const char *path, const token_list *list);
WEBMGMT_API int auth_token(const char *client_ip, const char *token);
WEBMGMT_API int generate_token2save(const char *client_ip, const char *token);
WEBMGMT_API int clear_token(void);
/* `dst` must hold 17 bytes and be zeroed by the caller. */
WEBMGMT_API int get_token(const char *name, char *dst);
WEBMGMT_API int check_token(void);
WEBMGMT_API int get_current_link_count(void);
WEBMGMT_API int get_current_link_count_max(void);

/* Login attempt counter file: one line "<time> <count>". */
WEBMGMT_API void read_count(const char *path, int32_t *time, int32_t *count);
WEBMGMT_API void save_count(const char *path, int32_t time, int32_t count);
WEBMGMT_API void login_add(const char *path);
WEBMGMT_API int32_t get_curr_time(void);
/* The first line tq_versign prints for "sha256 <text>", at most size - 1 characters. */
WEBMGMT_API int to_sha256(const char *text, char *out, int size);
/* Replaces the administrator password (sys_user.rootpwd) by its 64-digit SHA-256 text and
 * saves the record to flash; nothing changes when the tool gives no digest. The digest
 * fills the member, so it holds no terminator afterwards. */
WEBMGMT_API void passwd_to_sha256(misc_config *record);
/* Writes six random characters and a terminator into `field` (at least 7 bytes), never the
 * six characters it held before. */
WEBMGMT_API void create_passwd_random(char *field);

WEBMGMT_END_DECLS
#endif /* WEBMGMT_SESSION_H */
