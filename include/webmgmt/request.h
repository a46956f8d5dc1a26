/*
 * webmgmt: request decoding, template variables and HTML pages, file upload,
 * diagnostic output.
 */
#ifndef WEBMGMT_REQUEST_H
#define WEBMGMT_REQUEST_H

#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>

#include "webmgmt/common.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Request decoding                                                                      */
/* ===================================================================================== */

/* One decoded request variable; both strings are heap copies owned by the array. */
typedef struct form_pair {
    char *name;
    char *value;
} form_pair;

/* The capacity process_queue() assumes for the caller's array: it stores at most this
 * many pairs. The largest form, the device's all-radio wireless form, sends 3 radios of 25
 * radio variables and 4 VAPs of 19 variables each (303); 512 covers it and every other form
 * with room for the query string's pairs. Callers with another array size use
 * process_queue_n(). */
#define WEBMGMT_FORM_PAIRS 512

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
WEBMGMT_API int getDisposition_file(char **data_start, int *data_length, char **cursor, char *end,
                                    const char *boundary, upload_part *part);
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

WEBMGMT_END_DECLS
#endif /* WEBMGMT_REQUEST_H */
