/*
 * webmgmt: property files of NAME=value lines, and the field tables that bind dotted
 * member names to the members of a record.
 */
#ifndef WEBMGMT_FIELDS_H
#define WEBMGMT_FIELDS_H

#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/request.h"

WEBMGMT_BEGIN_DECLS

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

WEBMGMT_END_DECLS
#endif /* WEBMGMT_FIELDS_H */
