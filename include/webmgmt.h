/*
 * webmgmt: the support library of the router's web-management CGI programs.
 *
 * Every function has C linkage; every record is a plain struct built from fixed-width
 * types so that its layout is the same on the 32-bit ARM device and on x86-64 hosts.
 * This header compiles as C11 and as C++.
 *
 * Buffers: where a function writes into a caller's buffer without a size argument, the
 * comment beside it gives the size the caller must provide.
 */
#ifndef WEBMGMT_H
#define WEBMGMT_H

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#if defined(__GNUC__)
#define WEBMGMT_API __attribute__((visibility("default")))
#define WEBMGMT_NORETURN __attribute__((noreturn))
#define WEBMGMT_PRINTF(f, a) __attribute__((format(printf, f, a)))
#else
#define WEBMGMT_API
#define WEBMGMT_NORETURN
#define WEBMGMT_PRINTF(f, a)
#endif

#ifdef __cplusplus
#define WEBMGMT_STATIC_ASSERT(c, m) static_assert(c, m)
extern "C" {
#else
#define WEBMGMT_STATIC_ASSERT(c, m) _Static_assert(c, m)
#endif

/* ===================================================================================== */
/* Request decoding                                                                      */
/* ===================================================================================== */

/* One decoded request variable; both strings are heap copies owned by the array. */
typedef struct form_pair {
    char *name;
    char *value;
} form_pair;

/* The capacity process_queue() assumes for the caller's array: it stores at most this
 * many pairs. Callers with another array size use process_queue_n(). */
#define WEBMGMT_FORM_PAIRS 256

/* Decodes the POST body, then the query string, into pairs; returns the count. Decoded
 * names are cut at 127 bytes and values at 4095. Removes QUERY_STRING and HTTP_REFERER
 * from the environment (except for a GET request, which stores nothing). */
WEBMGMT_API int process_queue(form_pair *pairs);
/* As process_queue(), storing at most `capacity` pairs. */
WEBMGMT_API int process_queue_n(form_pair *pairs, int capacity);
/* The POST body (CONTENT_LENGTH bytes, NUL-terminated) or NULL; the caller frees it. */
WEBMGMT_API char *read_queue(void);
/* Copies `line` up to `stop` into `word` (which must be as large as `line`). */
WEBMGMT_API char *makeword(char *word, const char *line, char stop, char **rest);
WEBMGMT_API char *plustospace(char *s);
/* A '%' with fewer than two characters behind it is kept as it stands. */
WEBMGMT_API char *unescape_url(char *s);
WEBMGMT_API char x2c(const char *two_chars);
/* `out` must hold 1024 bytes: longer values are cut at 1023 characters. */
WEBMGMT_API int get_content_from_querystring(const char *name, char *out);
WEBMGMT_API int free_buff(void *buffer, int size);

/* ===================================================================================== */
/* Template variables and HTML templates                                                 */
/* ===================================================================================== */

#define WEBMGMT_VAR_NAME_SIZE 255
#define WEBMGMT_VAR_VALUE_SIZE 4097

typedef struct var_node {
    char name[WEBMGMT_VAR_NAME_SIZE];   /* at most 254 characters; longer names are cut */
    char value[WEBMGMT_VAR_VALUE_SIZE]; /* at most 4096 characters; longer values are cut */
    struct var_node *next;
} var_node;

WEBMGMT_API char *add_str(var_node **head, const char *name, const char *value);
WEBMGMT_API void free_list(var_node **head);
WEBMGMT_API void delete_string(var_node **head, const char *name);
WEBMGMT_API var_node *find_keyword(const char *text, var_node *head);
/* `at` lies in a line buffer with room for the value (print_html uses 4096 bytes). */
WEBMGMT_API void change_keyword(char *at, const var_node *node);
/* Renders the template to standard output; a line whose expansion outgrows 4095
 * characters is cut there. */
WEBMGMT_API int print_html(const char *path, var_node **head);
WEBMGMT_API int generate_hidder_from_list(var_node *head);
WEBMGMT_API int print_list(var_node *head);

/* ===================================================================================== */
/* File upload                                                                           */
/* ===================================================================================== */

#define WEBMGMT_UPLOAD_TEXT_SIZE 255
/* The in-memory split stores at most this many file parts. */
#define WEBMGMT_UPLOAD_PARTS 4

/* One file part of a multipart body. The caller supplies WEBMGMT_UPLOAD_PARTS of them,
 * zeroed; `data` is a heap copy owned by the record (freed by free_prop_file()). */
typedef struct upload_part {
    char name[WEBMGMT_UPLOAD_TEXT_SIZE];              /* after "name=", quotes removed */
    char content_type[WEBMGMT_UPLOAD_TEXT_SIZE];      /* after "Content-Type:", blank kept */
    char transfer_encoding[WEBMGMT_UPLOAD_TEXT_SIZE]; /* empty when the header is absent */
    char *data;
    uint32_t length; /* bytes in data */
} upload_part;
/* The pointer makes the record 776 bytes on the 32-bit device and 784 on 64-bit hosts. */
WEBMGMT_STATIC_ASSERT(sizeof(void *) != 4 || sizeof(upload_part) == 776, "upload_part, ILP32");
WEBMGMT_STATIC_ASSERT(sizeof(void *) != 8 || sizeof(upload_part) == 784, "upload_part, LP64");
WEBMGMT_STATIC_ASSERT(offsetof(upload_part, data) == 768, "upload_part layout");

/* Builds "--" and the text after "boundary=" of `content_type`. When *boundary is NULL a
 * buffer of strlen(content_type) + 3 bytes is allocated (the caller frees it); otherwise
 * *boundary must hold that many bytes. Returns the boundary's length, or -1 when the text
 * has no "boundary=" (nothing allocated then). */
WEBMGMT_API int get_vhash(const char *content_type, char **boundary);
/* The POST body (NUL-terminated, also for CONTENT_LENGTH 0) or NULL; stores CONTENT_LENGTH
 * in *length. The caller frees the buffer. */
WEBMGMT_API char *read_queue_for_upload(int *length);
/* The body behind the boundary string and a line feed; *total is boundary length plus
 * body length, and the byte there is replaced by a NUL. Builds *boundary as get_vhash().
 * NULL on any failure. The caller frees buffer (and the boundary it had allocated). */
WEBMGMT_API char *read_queue_for_upload1(int *total, char **boundary, int *boundary_length);
/* First position in [from, to) holding the `length` bytes of `pattern`, or NULL. */
WEBMGMT_API char *hex_search(const char *from, const char *to, const char *pattern, int length);
/* Parses the part after *cursor: 0, or -1 no boundary, -2 no next boundary, -3 no name,
 * -4 no Content-Type (a form field). */
WEBMGMT_API int getDisposition_file(char **data_start, int *data_length, char **cursor,
                                    char *end, const char *boundary, upload_part *part);
/* Copies up to WEBMGMT_UPLOAD_PARTS file parts of `buffer` into `parts`; returns the count. */
WEBMGMT_API int process_file(char *buffer, int length, const char *boundary, upload_part *parts);
WEBMGMT_API int free_prop_file(upload_part *parts, int count);
/* Streams the single file of the POST body to `path`: 0, or -1 with no file left there. */
WEBMGMT_API int save_queue_for_upload(const char *path);
/* Trims c1 and c2 from both ends of a counted text without copying. */
WEBMGMT_API char *strip_r(char *text, int *length, char c1, char c2);
/* Runs the device's script that stops daemons before a large upload; its wait status. */
WEBMGMT_API int killDaemon(void);

/* ===================================================================================== */
/* Diagnostic output                                                                     */
/* ===================================================================================== */

/* Appends the formatted message to /tmp/system.log; `stream` is ignored. */
WEBMGMT_API void DFPrintf(FILE *stream, const char *format, ...) WEBMGMT_PRINTF(2, 3);
WEBMGMT_API void print_hex_string(const void *bytes, int length);
WEBMGMT_API void DPrint_hex_string(const void *bytes, int length);
WEBMGMT_API void print_to_string(const void *bytes, int length);
WEBMGMT_API void print_string(const void *bytes, int length);
/* Appends 3 characters per byte to `text`. */
WEBMGMT_API int print_byte_to_string(char *text, const void *bytes, int length);
/* `out` must be as large as QUERY_STRING. */
WEBMGMT_API char *gethtmlpage(char *out);
WEBMGMT_API void *get_buffer(int size);
WEBMGMT_API int free_buffer(void *buffer, int size);

/* ===================================================================================== */
/* Property files                                                                        */
/* ===================================================================================== */

/* One NAME=value pair of a property file; both strings are heap copies owned by the
 * array. Shares its layout with form_pair so that get_prop() serves both. */
typedef struct prop_pair {
    char *name;
    char *value;
} prop_pair;
WEBMGMT_STATIC_ASSERT(sizeof(prop_pair) == sizeof(form_pair), "prop_pair and form_pair");
WEBMGMT_STATIC_ASSERT(offsetof(prop_pair, value) == offsetof(form_pair, value), "pair value");

/* Separators are passed as character codes: '=' (61), ' ' (32), anything else a tab. */

/* The capacity load_prop() assumes for the caller's array: it stores at most this many
 * pairs (load_default() uses such an array). Other sizes go through load_prop_n(). */
#define WEBMGMT_PROP_PAIRS 500
/* Lines are read in pieces of at most this many bytes, terminator included. */
#define WEBMGMT_PROP_LINE 1024
/* get_prop() copies at most this many characters (and the terminator) into `out`. */
#define WEBMGMT_GET_PROP_MAX 4095

/* Loads the NAME=value lines of a file; returns the number of pairs stored (0 when the
 * file cannot be opened). The caller frees them with free_prop(). */
WEBMGMT_API int load_prop(int separator, const char *path, prop_pair *pairs);
/* As load_prop(), storing at most `capacity` pairs. */
WEBMGMT_API int load_prop_n(int separator, const char *path, prop_pair *pairs, int capacity);
/* Parses one line into heap copies in `pair`: 1, or 0 for a comment, a line without the
 * separator or a failed allocation (nothing is allocated then). */
WEBMGMT_API int get_pr(int separator, const char *line, prop_pair *pair);

/* The readers below take an array of prop_pair or of form_pair (the two share one layout),
 * hence `const void *`. A count below 1 finds nothing and leaves `out` untouched. */

/* The value without one leading and one trailing double quote, copied only when shorter
 * than `out_size`; returns `out` when the name is found (0 for values over 4096 characters). */
WEBMGMT_API char *get_prop_max(const char *name, char *out, const void *pairs, int count,
                               int out_size);
/* The value as stored (quotes and escapes kept); `out` must hold 4096 bytes: at most
 * WEBMGMT_GET_PROP_MAX characters are copied. Returns `out`, or 0 when not found. */
WEBMGMT_API char *get_prop(const char *name, char *out, const void *pairs, int count);
/* As get_prop(), copying at most `out_size` - 1 characters (and at most 4095). */
WEBMGMT_API char *get_prop_n(const char *name, char *out, const void *pairs, int count,
                             int out_size);
/* Stores atoi(value) into the single byte `out`; returns `out`, or 0 when not found. */
WEBMGMT_API char *get_prop_char(const char *name, char *out, const void *pairs, int count);
/* Replaces the value of the first pair named `name` (its heap copy grows when the new value
 * is longer); returns `new_value`, or 0 when not found. */
WEBMGMT_API const char *put_prop(const char *name, const char *new_value, prop_pair *pairs,
                                 int count);
WEBMGMT_API int free_prop(prop_pair *pairs, int count);
WEBMGMT_API void dump_prop(const prop_pair *pairs, int count);
WEBMGMT_API void generate_hidder_from_prop(const prop_pair *pairs, int count);
/* Rewrites the values of the keys the file already holds, as NAME="value"; 1, or 0. */
WEBMGMT_API int save_prop(int separator, const char *path, const prop_pair *pairs, int count);
/* Replaces (quoted) or appends (unquoted) prefix+key; 1, or 0. */
WEBMGMT_API int save_global_conf(int separator, const char *path, const char *prefix,
                                 const char *key, const char *value);

/* Drops `c` at the end (in place) and returns the text past `c` at the start. */
WEBMGMT_API char *strip(char *text, int c);
/* Puts a backslash before \ ` " and $; `dst` must hold twice the length plus one. */
WEBMGMT_API char *add_escape(const char *src, char *dst);
/* Removes the backslashes add_escape() added; `dst` must be as large as `src`. */
WEBMGMT_API char *strip_escape(const char *src, char *dst);
WEBMGMT_API int calc_netpriexlength(const char *mask);
WEBMGMT_API int file_copy(const char *src_path, const char *dst_path);
WEBMGMT_API int hex2int(char c);
/* Writes 2 upper-case hex digits per byte and a terminator into `out` (2 * length + 1
 * bytes); with `out` null a zeroed block of that size is allocated (the caller frees it). */
WEBMGMT_API char *ascii2hex(const void *bytes, int length, char *out);
/* `out` is zeroed by the caller and must hold half the text's length plus one. */
WEBMGMT_API char *hex2ascii(const char *hex, char *out);

/* ===================================================================================== */
/* Field tables                                                                          */
/* ===================================================================================== */

#define WEBMGMT_FIELD_NAME_SIZE 100
#define WEBMGMT_FIELD_ROWS 2000

/* One row of a field table or form binding table; an empty name ends the table. */
typedef struct field_desc {
    char name[WEBMGMT_FIELD_NAME_SIZE];
    void *address;
    int16_t type;  /* 1 to 12 */
    uint16_t size; /* bytes of the member */
} field_desc;

/* Assigns `text` to every row named `name` by its type code; always 0. Text members
 * (codes 4 and 5) copy at most the text and its terminator, the rest is zeroed. */
WEBMGMT_API int set_value(field_desc *table, const char *name, const char *text);
/* Assigns every NAME=value of a defaults file (at most WEBMGMT_PROP_PAIRS); always 0. */
WEBMGMT_API int load_default(field_desc *table, const char *path);
/* Zeroes all WEBMGMT_FIELD_ROWS rows. */
WEBMGMT_API void clean_points(field_desc *table);
/* Three rows over a product record: a 50-byte name and the two bytes after it; returns 3. */
WEBMGMT_API int ShowVar_field(field_desc *table, void *record);

/* Byte dumps on standard output, 16 bytes a line; "label(length):" first when label is
 * not NULL. */
WEBMGMT_API void print_string_array(const char *label, const void *bytes, int length);
WEBMGMT_API void print_hex_array(const char *label, const void *bytes, int length);

/* ===================================================================================== */
/* Wireless and system record catalogue                                                  */
/* ===================================================================================== */

/* ===================================================================================== */
/* Network and rule-list record catalogue                                                */
/* ===================================================================================== */

/* ===================================================================================== */
/* Form framework, list filters and forms                                                */
/* ===================================================================================== */

/* ===================================================================================== */
/* Configuration views                                                                   */
/* ===================================================================================== */

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
/* Writes six random characters and a terminator into `field` (at least 7 bytes), never the
 * six characters it held before. */
WEBMGMT_API void create_passwd_random(char *field);

/* ===================================================================================== */
/* Command execution and processes                                                       */
/* ===================================================================================== */

/* One process as the /proc scanner sees it. */
typedef struct proc_entry {
    int32_t pid;
    char user[9];       /* user name or numeric uid, cut to 8 characters */
    char state[4];      /* state letter, ' ' or 'W', '<' 'N' or ' ', NUL */
    uint32_t rss;       /* kilobytes */
    int32_t ppid;
    char short_cmd[16]; /* command name from /proc/<pid>/stat */
} proc_entry;
WEBMGMT_STATIC_ASSERT(sizeof(proc_entry) == 44, "proc_entry layout");

WEBMGMT_API extern const char *bb_applet_name;
WEBMGMT_API extern int bb_default_error_retval;
WEBMGMT_API extern const char *const bb_msg_memory_exhausted;

WEBMGMT_API int do_system(const char *format, ...) WEBMGMT_PRINTF(1, 2);
WEBMGMT_API int Kill_App_byname(const char *name);
WEBMGMT_API int Kill_App_byPid(const char *pid);
WEBMGMT_API int File_Exist(const char *path);
/* `buffer` must hold 255 bytes. */
WEBMGMT_API char *getStrvalfromfile(const char *path, char *buffer);
WEBMGMT_API int getPid(const char *path);
WEBMGMT_API proc_entry *procps_scan(void);
/* Heap list of pids ending in 0, or the single value -1; the caller frees it. */
WEBMGMT_API int32_t *find_pid_by_name(const char *name);
WEBMGMT_API int is_runing(const char *name);
WEBMGMT_API int Cloud_Config(int mode, int enable);
WEBMGMT_API void bb_verror_msg(const char *format, va_list args);
WEBMGMT_API WEBMGMT_NORETURN void bb_error_msg_and_die(const char *format, ...)
    WEBMGMT_PRINTF(1, 2);
WEBMGMT_API void *xmalloc(size_t size);
WEBMGMT_API void *xrealloc(void *block, size_t size);
WEBMGMT_API char *safe_strncpy(char *dst, const char *src, size_t size);
WEBMGMT_API char *my_getug(char *buffer, const char *name, long id, int bufsize, char prefix);
WEBMGMT_API char *my_getpwuid(char *buffer, long uid, int bufsize);

/* ===================================================================================== */
/* Interface and port probes, ARP and leases, statistics                                 */
/* ===================================================================================== */

/* ===================================================================================== */
/* Firmware verification and small conversions                                           */
/* ===================================================================================== */

WEBMGMT_API int verify_upgrade_image(const char *image_path, const char *signature_path);
WEBMGMT_API int str2mac(const char *text, unsigned char *mac);
WEBMGMT_API int mac_is_zero(const unsigned char *mac);
WEBMGMT_API int c2i(char c);
WEBMGMT_API int hex2dec(const char *text);
WEBMGMT_API int split_mac_convert_int_array(char *text, const char *separators, unsigned char *mac);
/* `dst` must hold half the text's length plus one. */
WEBMGMT_API void HexToStr(char *dst, const char *hex);
WEBMGMT_API void HexToAscii(const unsigned char *bytes, char *dst, int count);
WEBMGMT_API void AsciiToHex(const char *hex, unsigned char *dst, int length);
/* `dst` is zeroed by the caller and must hold 6 times the text's length plus one. */
WEBMGMT_API void filter_xml_name(const char *text, char *dst);
/* `dst` is zeroed by the caller and must hold twice the text's length plus one. */
WEBMGMT_API void filter_json_name(const char *text, char *dst);
WEBMGMT_API int web_commd_str_filter(char *buffer, int length);
WEBMGMT_API void str_replace_char(const char *src, char *dst, const char *chars,
                                  const char *const *replacements, int count);
WEBMGMT_API char *strAToa(char *text);
WEBMGMT_API char *straToA(char *text);
WEBMGMT_API int low2UpperChar(const char *src, int count, char *dst);
WEBMGMT_API int ntod(uint32_t mask);
WEBMGMT_API int mypow2(int n);
WEBMGMT_API int change_time_to_int(const char *hhmm);
WEBMGMT_API int check_time_one_day(const char *start, const char *end);
/* `dst` must hold 64 bytes. */
WEBMGMT_API int get_current_time(char *dst);
WEBMGMT_API uint32_t get_now_msec(void);
WEBMGMT_API int fwritestr(const char *path, const char *text);

#ifdef __cplusplus
}
#endif
#endif /* WEBMGMT_H */
