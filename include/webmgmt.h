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

/*
 * Configuration records are exchanged whole with the configuration store, so their layout
 * is fixed: members in declaration order, natural alignment, the same bytes on the 32-bit
 * ARM device and on x86-64 hosts (no pointers, no long, 64-bit members at 8-aligned
 * offsets).
 *
 * Each record and nested block is declared once, as a member list
 *     X(code, type, name, dimensions)
 * that is expanded here into the struct and in conf/ into the field-table builder, so a
 * member's name, size, place and type code cannot drift apart. `code` is the field-table
 * type code of the member (1 to 12); 0 marks members that no table lists (nested blocks,
 * room kept for settings that forms and views name, explicit padding).
 */
#define WEBMGMT_DECLARE_MEMBER(code, type, name, dims) type name dims;

/* An IPv4 address member: the address in network order in the second 32-bit word. */
typedef struct ipaddr_field {
    uint32_t family;
    uint32_t v4;
    uint8_t resved[8];
} ipaddr_field;
WEBMGMT_STATIC_ASSERT(sizeof(ipaddr_field) == 16, "ipaddr_field layout");

/* An IPv6 address member: the 16 address bytes after the family word and the IPv4 slot. */
typedef struct ip6addr_field {
    uint32_t family;
    uint32_t v4;
    uint8_t v6[16];
    uint32_t scope;
} ip6addr_field;
WEBMGMT_STATIC_ASSERT(sizeof(ip6addr_field) == 28, "ip6addr_field layout");

/* A 6-byte MAC address member (named with a further ".mac" in field tables). */
typedef struct mac_field {
    uint8_t mac[6];
} mac_field;
WEBMGMT_STATIC_ASSERT(sizeof(mac_field) == 6, "mac_field layout");

#define WEBMGMT_CONFIG_VERSION_MEMBERS(X)                                                          \
    X(5, uint8_t, main_version, )                                                                  \
    X(5, uint8_t, sub_version, )
typedef struct config_version {
    WEBMGMT_CONFIG_VERSION_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} config_version;
WEBMGMT_STATIC_ASSERT(sizeof(config_version) == 2, "config_version layout");

/* The four members every record begins with. */
#define WEBMGMT_RECORD_HEAD(X)                                                                     \
    X(0, config_version, config_ver, )                                                             \
    X(5, char, lock_file, [128])                                                                   \
    X(0, uint8_t, pad_lock_location, [2])                                                          \
    X(1, int32_t, lock_location, )

/* Timed reboot, shared by the misc record and the AP template. */
#define WEBMGMT_TIMEREBOOT_MEMBERS(X)                                                              \
    X(4, uint8_t, m_TimeRebootEnable, )                                                            \
    X(4, uint8_t, m_TimeRebootType, )                                                              \
    X(4, uint8_t, m_TimeReboot_Hour, )                                                             \
    X(4, uint8_t, m_TimeReboot_Day, )                                                              \
    X(4, uint8_t, m_TimeReboot_Month, )                                                            \
    X(4, uint8_t, m_TimeReboot_Week, )
typedef struct timereboot_config {
    WEBMGMT_TIMEREBOOT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} timereboot_config;
WEBMGMT_STATIC_ASSERT(sizeof(timereboot_config) == 6, "timereboot_config layout");

/* One entry of a MAC access list (per radio, and the global list of misc_ext_config). */
#define WEBMGMT_ACL_ENTRY_MEMBERS(X)                                                               \
    X(1, int32_t, id, )                                                                            \
    X(4, char, name, [200])                                                                        \
    X(4, char, mac, [20])                                                                          \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(4, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct acl_entry {
    WEBMGMT_ACL_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} acl_entry;
WEBMGMT_STATIC_ASSERT(sizeof(acl_entry) == 928, "acl_entry layout");

/* --- wifi_config: the device's own radios ----------------------------------------------- */

#define WEBMGMT_WIFI_RADIO_COUNT 3
#define WEBMGMT_WIFI_VAP_COUNT 4
#define WEBMGMT_WIFI_ACL_COUNT 32

/* A virtual access point; the repeater (client) interface has the same layout. */
#define WEBMGMT_WIFI_VAP_MEMBERS(X)                                                                \
    X(4, uint8_t, m_wlan_enable, )                                                                 \
    X(0, uint8_t, pad_m_mode, [3])                                                                 \
    X(1, int32_t, m_mode, )                                                                        \
    X(4, char, m_ifname, [16])                                                                     \
    X(4, uint8_t, m_wlan_hide_ssid, )                                                              \
    X(4, char, m_ssid, [64])                                                                       \
    X(0, uint8_t, pad_m_vlanid, [1])                                                               \
    X(2, int16_t, m_vlanid, )                                                                      \
    X(4, uint8_t, m_lockbssid, )                                                                   \
    X(5, mac_field, m_bssid, )                                                                     \
    X(4, uint8_t, m_security, )                                                                    \
    X(4, uint8_t, m_securitycipher, )                                                              \
    X(4, uint8_t, m_authmode, )                                                                    \
    X(4, uint8_t, m_wep_keytype, )                                                                 \
    X(4, char, m_wep_keystr, [30])                                                                 \
    X(4, uint8_t, m_psk_keytype, )                                                                 \
    X(4, char, m_psk_keystr, [64])                                                                 \
    X(0, uint8_t, pad_m_radius_serverip, [2])                                                      \
    X(6, ipaddr_field, m_radius_serverip, )                                                        \
    X(2, int16_t, m_radius_serverport, )                                                           \
    X(4, char, m_radius_sharekey, [64])                                                            \
    X(0, uint8_t, pad_m_tx_pkts, [2])                                                              \
    X(9, uint32_t, m_tx_pkts, )                                                                    \
    X(9, uint32_t, m_rx_pkts, )                                                                    \
    X(0, uint8_t, pad_m_tx_bytes, [4])                                                             \
    X(8, uint64_t, m_tx_bytes, )                                                                   \
    X(8, uint64_t, m_rx_bytes, )                                                                   \
    X(4, char, m_bind_eth, [16])                                                                   \
    X(4, uint8_t, m_p2p, )                                                                         \
    X(4, uint8_t, m_vlan_tag_enable, )                                                             \
    X(5, char, resved, [499])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct wifi_vap {
    WEBMGMT_WIFI_VAP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_vap;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_vap) == 832, "wifi_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_vap, m_tx_bytes) == 296, "wifi_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_vap, m_rx_bytes) == 304, "wifi_vap layout");

#define WEBMGMT_WIFI_ACLLIST_MEMBERS(X)                                                            \
    X(2, int32_t, mode, )                                                                          \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, acl_entry, element, [WEBMGMT_WIFI_ACL_COUNT])
typedef struct wifi_acllist {
    WEBMGMT_WIFI_ACLLIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_acllist;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_acllist) == 29704, "wifi_acllist layout");

#define WEBMGMT_WIFI_RADIO_MEMBERS(X)                                                              \
    X(4, uint8_t, m_radio_type, )                                                                  \
    X(4, char, m_phyname, [16])                                                                    \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_phymode, )                                                                     \
    X(4, uint8_t, m_wirelessmode, )                                                                \
    X(4, uint8_t, m_wirelessbwmode, )                                                              \
    X(4, uint8_t, m_ampduenable, )                                                                 \
    X(4, uint8_t, m_wlan_isolate, )                                                                \
    X(4, uint8_t, m_wlan_rate, )                                                                   \
    X(2, int16_t, m_wlan_beacon_interval, )                                                        \
    X(2, int16_t, m_wlan_rts, )                                                                    \
    X(2, int16_t, m_wlan_frag, )                                                                   \
    X(2, int16_t, m_wlan_shortGI, )                                                                \
    X(2, int16_t, m_wlan_txpower, )                                                                \
    X(2, int16_t, m_wlan_max_txpower, )                                                            \
    X(2, int16_t, m_channel, )                                                                     \
    X(2, int16_t, m_channel_config, )                                                              \
    X(2, int16_t, m_rev_option, )                                                                  \
    X(2, int16_t, m_coverage_threshold, )                                                          \
    X(2, int16_t, m_MaxStanum, )                                                                   \
    X(4, char, contrystr, [4])                                                                     \
    X(2, int16_t, m_dfs_enable, )                                                                  \
    X(0, uint8_t, pad_m_vap, [4])                                                                  \
    X(0, wifi_vap, m_vap, [WEBMGMT_WIFI_VAP_COUNT])                                                \
    X(0, wifi_vap, m_repeater, )                                                                   \
    X(0, wifi_acllist, m_acllist, )                                                                \
    X(2, int16_t, m_stanum, )                                                                      \
    X(0, uint8_t, pad_m_acktimeout, [2])                                                           \
    X(1, int32_t, m_acktimeout, )                                                                  \
    X(1, int32_t, m_wmm, )                                                                         \
    X(4, uint8_t, m_txchainmask, )                                                                 \
    X(4, uint8_t, m_rxchainmask, )                                                                 \
    X(4, uint8_t, m_support_6E, )                                                                  \
    X(4, uint8_t, m_no_support_160M, )                                                             \
    X(4, uint8_t, channel_limit_enable, )                                                          \
    X(4, char, resved, [497])                                                                      \
    X(0, uint8_t, pad_end, [6])
typedef struct wifi_radio {
    WEBMGMT_WIFI_RADIO_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_radio;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_radio) == 34440, "wifi_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_radio, m_vap) == 56, "wifi_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_radio, m_repeater) == 3384, "wifi_radio layout");

#define WEBMGMT_WIFI_TIMECLOSE_MEMBERS(X)                                                          \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, char, m_start_time, [10])                                                                 \
    X(4, char, m_end_time, [10])
typedef struct wifi_timeclose {
    WEBMGMT_WIFI_TIMECLOSE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_timeclose;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_timeclose) == 21, "wifi_timeclose layout");

#define WEBMGMT_WIFI_CONFIG_MEMBERS(X)                                                             \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, m_repeater_radio_id, )                                                           \
    X(0, uint8_t, pad_m_radio, [4])                                                                \
    X(0, wifi_radio, m_radio, [WEBMGMT_WIFI_RADIO_COUNT])                                          \
    X(0, wifi_timeclose, m_timeclosectrl, )                                                        \
    X(0, uint8_t, pad_kvr_2g_rssi_thr, [1])                                                        \
    X(2, int16_t, kvr_2g_rssi_thr, )                                                               \
    X(2, int16_t, kvr_5g_rssi_thr, )                                                               \
    X(4, uint8_t, is_5g_first, )                                                                   \
    X(4, uint8_t, kvr_enable, )                                                                    \
    X(5, char, resved, [494])                                                                      \
    X(0, uint8_t, pad_end, [6])
typedef struct wifi_config {
    WEBMGMT_WIFI_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_config;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_config) == 103992, "wifi_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_config, lock_location) == 132, "wifi_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_config, m_radio) == 144, "wifi_config layout");

/* --- defap_config: the default AP template ---------------------------------------------- */

#define WEBMGMT_DEFAP_VAP_MEMBERS(X)                                                               \
    X(4, uint8_t, m_wlan_enable, )                                                                 \
    X(4, uint8_t, m_wlan_hide_ssid, )                                                              \
    X(4, char, m_ssid, [64])                                                                       \
    X(2, int16_t, m_vlanid, )                                                                      \
    X(5, mac_field, m_bssid, )                                                                     \
    X(4, uint8_t, m_security, )                                                                    \
    X(4, uint8_t, m_securitycipher, )                                                              \
    X(4, uint8_t, m_authmode, )                                                                    \
    X(4, uint8_t, m_wep_keytype, )                                                                 \
    X(4, char, m_wep_keystr, [30])                                                                 \
    X(4, uint8_t, m_psk_keytype, )                                                                 \
    X(4, char, m_psk_keystr, [64])                                                                 \
    X(0, uint8_t, pad_m_radius_serverip, [3])                                                      \
    X(9, ipaddr_field, m_radius_serverip, )                                                        \
    X(2, int16_t, m_radius_serverport, )                                                           \
    X(4, char, m_radius_sharekey, [64])                                                            \
    X(0, uint8_t, pad_m_tx_pkts, [2])                                                              \
    X(9, uint32_t, m_tx_pkts, )                                                                    \
    X(9, uint32_t, m_rx_pkts, )                                                                    \
    X(0, uint8_t, pad_m_tx_bytes, [4])                                                             \
    X(8, uint64_t, m_tx_bytes, )                                                                   \
    X(8, uint64_t, m_rx_bytes, )
typedef struct defap_vap {
    WEBMGMT_DEFAP_VAP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_vap;
WEBMGMT_STATIC_ASSERT(sizeof(defap_vap) == 288, "defap_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_vap, m_tx_bytes) == 272, "defap_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_vap, m_rx_bytes) == 280, "defap_vap layout");

#define WEBMGMT_DEFAP_RADIO_MEMBERS(X)                                                             \
    X(4, uint8_t, m_radio_type, )                                                                  \
    X(4, uint8_t, m_wirelessmode, )                                                                \
    X(4, uint8_t, m_wirelessbwmode, )                                                              \
    X(4, uint8_t, m_ampduenable, )                                                                 \
    X(4, uint8_t, m_wlan_isolate, )                                                                \
    X(4, uint8_t, m_wlan_rate, )                                                                   \
    X(2, int16_t, m_wlan_beacon_interval, )                                                        \
    X(2, int16_t, m_wlan_rts, )                                                                    \
    X(2, int16_t, m_wlan_frag, )                                                                   \
    X(2, int16_t, m_wlan_shortGI, )                                                                \
    X(2, int16_t, m_wlan_txpower, )                                                                \
    X(2, int16_t, m_wlan_max_txpower, )                                                            \
    X(2, int16_t, m_channel, )                                                                     \
    X(2, int16_t, m_rev_option, )                                                                  \
    X(2, int16_t, m_coverage_threshold, )                                                          \
    X(4, int16_t, m_MaxStanum, )                                                                   \
    X(4, char, contrystr, [4])                                                                     \
    X(0, uint8_t, pad_m_vap, [2])                                                                  \
    X(0, defap_vap, m_vap, [WEBMGMT_WIFI_VAP_COUNT])
typedef struct defap_radio {
    WEBMGMT_DEFAP_RADIO_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_radio;
WEBMGMT_STATIC_ASSERT(sizeof(defap_radio) == 1184, "defap_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_radio, m_vap) == 32, "defap_radio layout");

#define WEBMGMT_DEFAP_WEBLOGIN_MEMBERS(X)                                                          \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_usertype, )                                                                    \
    X(4, char, m_username, [32])                                                                   \
    X(4, char, m_userpwd, [32])
typedef struct defap_weblogin {
    WEBMGMT_DEFAP_WEBLOGIN_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_weblogin;
WEBMGMT_STATIC_ASSERT(sizeof(defap_weblogin) == 66, "defap_weblogin layout");

#define WEBMGMT_DEFAP_IPTV_MEMBERS(X)                                                              \
    X(4, uint8_t, m_enable, )                                                                      \
    X(0, uint8_t, pad_m_vlanid, [3])                                                               \
    X(9, uint32_t, m_vlanid, )
typedef struct defap_iptv {
    WEBMGMT_DEFAP_IPTV_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_iptv;
WEBMGMT_STATIC_ASSERT(sizeof(defap_iptv) == 8, "defap_iptv layout");

#define WEBMGMT_DEFAP_CONFIG_MEMBERS(X)                                                            \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(4, uint8_t, m_wlan_group_id, )                                                               \
    X(0, uint8_t, pad_m_radio, [7])                                                                \
    X(0, defap_radio, m_radio, [WEBMGMT_WIFI_RADIO_COUNT])                                         \
    X(0, timereboot_config, m_timereboot, )                                                        \
    X(0, defap_weblogin, m_weblogin, )                                                             \
    X(0, defap_iptv, m_iptv, )                                                                     \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [4])
typedef struct defap_config {
    WEBMGMT_DEFAP_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_config;
WEBMGMT_STATIC_ASSERT(sizeof(defap_config) == 4280, "defap_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_config, lock_location) == 132, "defap_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_config, m_radio) == 144, "defap_config layout");

/* --- productinfo_config: product identity and hardware capabilities --------------------- */

#define WEBMGMT_PRODUCT_RADIO_SPEC_MEMBERS(X)                                                      \
    X(1, int32_t, radio_type, )                                                                    \
    X(1, int32_t, txpowerlist, [5])                                                                \
    X(4, char, countrylist, [15][10])                                                              \
    X(0, uint8_t, pad_phymodelist, [2])                                                            \
    X(1, int32_t, phymodelist, [30])                                                               \
    X(1, int32_t, ap_authlist, [15])                                                               \
    X(1, int32_t, repeater_authlist, [20])                                                         \
    X(1, int32_t, max_sta, )
typedef struct product_radio_spec {
    WEBMGMT_PRODUCT_RADIO_SPEC_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_radio_spec;
WEBMGMT_STATIC_ASSERT(sizeof(product_radio_spec) == 440, "product_radio_spec layout");

#define WEBMGMT_PRODUCT_PORT_SPEC_MEMBERS(X)                                                       \
    X(4, uint8_t, eth_is_phy, )                                                                    \
    X(4, uint8_t, eth_phy_num, )                                                                   \
    X(4, uint8_t, switchid, )                                                                      \
    X(4, uint8_t, portid, )
typedef struct product_port_spec {
    WEBMGMT_PRODUCT_PORT_SPEC_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_port_spec;
WEBMGMT_STATIC_ASSERT(sizeof(product_port_spec) == 4, "product_port_spec layout");

#define WEBMGMT_PRODUCT_PORTS 12

#define WEBMGMT_PRODUCT_DEV_SPEC_MEMBERS(X)                                                        \
    X(1, int32_t, support_radio_count, )                                                           \
    X(1, int32_t, support_vap_count, )                                                             \
    X(0, product_radio_spec, support_radio_spec, [WEBMGMT_WIFI_RADIO_COUNT])                       \
    X(1, int32_t, support_opmode, [6])                                                             \
    X(4, char, opmode_lan_devlist, [6][100])                                                       \
    X(1, int32_t, support_eth_count, )                                                             \
    X(4, char, support_languagelist, [5][10])                                                      \
    X(0, uint8_t, pad_support_eth_speed, [2])                                                      \
    X(1, int32_t, support_eth_speed, [WEBMGMT_PRODUCT_PORTS])                                      \
    X(4, char, support_eth_list, [WEBMGMT_PRODUCT_PORTS][10])                                      \
    X(4, char, countrydesclist, [15][80])                                                          \
    X(4, char, support_eth_type, [12])                                                             \
    X(1, int32_t, support_tpc, )                                                                   \
    X(1, int32_t, support_iptv, )                                                                  \
    X(5, uint8_t, support_8337, )                                                                  \
    X(5, uint8_t, support_hwatchdog, )                                                             \
    X(4, uint8_t, sysled_on_after_wifi_up, )                                                       \
    X(4, uint8_t, have_wireless1_mac, )                                                            \
    X(4, uint8_t, have_wireless2_mac, )                                                            \
    X(4, uint8_t, have_wireless3_mac, )                                                            \
    X(4, uint8_t, support_btn_led, )                                                               \
    X(4, uint8_t, support_ac_led_onoff, )                                                          \
    X(4, uint8_t, support_sysled_qflash, )                                                         \
    X(4, uint8_t, disable_tkip, )                                                                  \
    X(4, uint8_t, support_high_low_frequency, )                                                    \
    X(5, uint8_t, support_rs_feature, )                                                            \
    X(4, uint8_t, support_change_wanport, )                                                        \
    X(4, uint8_t, sysupgrade_encrypto_type, )                                                      \
    X(4, uint8_t, wan_phy_addr, )                                                                  \
    X(5, uint8_t, support_set_acktimeout_reg, )                                                    \
    X(4, uint8_t, sfp_port, )                                                                      \
    X(4, uint8_t, support_eth_port_config, )                                                       \
    X(0, product_port_spec, port_spec, [WEBMGMT_PRODUCT_PORTS])                                    \
    X(4, uint8_t, support_ac_find_ap, )                                                            \
    X(4, uint8_t, support_ac_find_ap_led_showtime, )                                               \
    X(1, int32_t, support_ac_find_ap_led_showinterval, )                                           \
    X(5, uint8_t, led_on_val, )                                                                    \
    X(5, uint8_t, led_off_val, )                                                                   \
    X(4, uint8_t, dev_2g5g_control_same_led, )                                                     \
    X(4, uint8_t, support_fit_sysled_qflash, )                                                     \
    X(4, uint8_t, auto_channel_is_list, )                                                          \
    X(0, uint8_t, pad_end, [3])
typedef struct product_dev_spec {
    WEBMGMT_PRODUCT_DEV_SPEC_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_dev_spec;
WEBMGMT_STATIC_ASSERT(sizeof(product_dev_spec) == 3476, "product_dev_spec layout");

#define WEBMGMT_PRODUCT_CLOUD_MEMBERS(X)                                                           \
    X(5, char, dev_captbl_mask, [40][40])                                                          \
    X(5, char, dev_captbl_mask_gw, [20][40])                                                       \
    X(5, char, dev_captbl_mask_repeater, [20][40])                                                 \
    X(5, char, dev_captbl_mask_ap, [20][40])                                                       \
    X(5, uint8_t, cloudclient_service_type, )                                                      \
    X(5, uint8_t, cloudclient_product_type, )                                                      \
    X(5, char, cloudclient_chip_product_type, [20])                                                \
    X(5, char, cloudclient_up_mac_devname, [10])                                                   \
    X(5, uint8_t, dev_support_led_onoff, )                                                         \
    X(5, char, dev_support_ac, [10])                                                               \
    X(5, char, dev_support_manage_ap, [10])                                                        \
    X(5, uint8_t, dev_support_max_user, )                                                          \
    X(5, char, dev_support_auth, [10])                                                             \
    X(5, uint8_t, dev_support_radio_num, )                                                         \
    X(5, uint8_t, dev_support_vap_num, )                                                           \
    X(5, uint8_t, dev_support_behavior, )                                                          \
    X(5, uint8_t, dev_support_famliy_member, )                                                     \
    X(5, char, dev_support_remote_manage, [10])                                                    \
    X(5, uint8_t, dev_support_sta_wchat_tip, )                                                     \
    X(5, char, dev_support_time_reboot, [10])                                                      \
    X(5, uint8_t, dev_support_batch_upgrade, )                                                     \
    X(5, uint8_t, dev_support_ghcp, )                                                              \
    X(5, uint8_t, dev_support_reboot, )                                                            \
    X(5, uint8_t, dev_support_upgrade, )                                                           \
    X(5, char, dev_support_remote_switch, [10])                                                    \
    X(5, char, dev_support_feature_libup, [10])
typedef struct product_cloud {
    WEBMGMT_PRODUCT_CLOUD_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_cloud;
WEBMGMT_STATIC_ASSERT(sizeof(product_cloud) == 4113, "product_cloud layout");

/* One switch port's settings. */
#define WEBMGMT_PRODUCT_PORT_MEMBERS(X)                                                            \
    X(4, char, m_portname, [16])                                                                   \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_mode, )                                                                        \
    X(4, uint8_t, m_auto_negotiation, )                                                            \
    X(4, uint8_t, m_duplex, )                                                                      \
    X(4, uint8_t, m_speed_10, )                                                                    \
    X(4, uint8_t, m_speed_100, )                                                                   \
    X(4, uint8_t, m_speed_1000, )                                                                  \
    X(4, uint8_t, m_speed_2500, )                                                                  \
    X(4, uint8_t, m_speed_10000, )
typedef struct product_port {
    WEBMGMT_PRODUCT_PORT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_port;
WEBMGMT_STATIC_ASSERT(sizeof(product_port) == 25, "product_port layout");

#define WEBMGMT_PRODUCTINFO_CONFIG_MEMBERS(X)                                                      \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, char, productname, [50])                                                                  \
    X(5, char, device_sn, [50])                                                                    \
    X(1, int32_t, dev_opmode, )                                                                    \
    X(5, char, default_language, [10])                                                             \
    X(5, char, device_name, [100])                                                                 \
    X(5, char, device_position, [100])                                                             \
    X(5, uint8_t, upgrade_reset, )                                                                 \
    X(5, char, device_cpu, [10])                                                                   \
    X(0, uint8_t, pad_device_flash_size, [1])                                                      \
    X(2, int16_t, device_flash_size, )                                                             \
    X(2, int16_t, device_ram_size, )                                                               \
    X(2, int16_t, max_device_ap, )                                                                 \
    X(5, char, remote_server_addr, [200])                                                          \
    X(5, char, remote_web_config_domain, [200])                                                    \
    X(5, char, config_ac_rom_update_url, [200])                                                    \
    X(5, char, config_ap_rom_update_url, [200])                                                    \
    X(5, char, config_get_telnet_port_url, [200])                                                  \
    X(0, product_dev_spec, dev_spec, )                                                             \
    X(5, uint8_t, run_first, )                                                                     \
    X(5, uint8_t, add_mac2ssid, )                                                                  \
    X(5, uint8_t, add_mac_len, )                                                                   \
    X(5, uint8_t, ap_mode, )                                                                       \
    X(5, char, device_cpu_freq, [10])                                                              \
    X(0, product_cloud, config_cloud, )                                                            \
    X(4, uint8_t, test_mode, )                                                                     \
    X(5, uint8_t, is_first, )                                                                      \
    X(5, uint8_t, fit_to_fat, )                                                                    \
    X(4, uint8_t, btn_led_off_status, )                                                            \
    X(5, char, web_lock_time, [10])                                                                \
    X(5, uint8_t, profile_suffix, )                                                                \
    X(4, uint8_t, timed_wifi_led_enable, )                                                         \
    X(5, uint8_t, gateway_use_defipaddr, )                                                         \
    X(0, product_port, port, [WEBMGMT_PRODUCT_PORTS])                                              \
    X(5, uint8_t, support_up_wifi, )                                                               \
    X(5, uint8_t, support_TOVAN_cl, )                                                              \
    X(5, uint8_t, disable_switch_vlan, )                                                           \
    X(5, char, resved, [96])                                                                       \
    X(0, uint8_t, pad_end, [1])
typedef struct productinfo_config {
    WEBMGMT_PRODUCTINFO_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} productinfo_config;
WEBMGMT_STATIC_ASSERT(sizeof(productinfo_config) == 9488, "productinfo_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(productinfo_config, lock_location) == 132,
                      "productinfo_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(productinfo_config, dev_spec) == 1468, "productinfo_config layout");

/* --- misc_config: system settings ------------------------------------------------------- */

#define WEBMGMT_MISC_USER_MEMBERS(X)                                                               \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, char, rootname, [64])                                                                     \
    X(5, char, rootpwd, [64])                                                                      \
    X(9, uint32_t, root_type, )                                                                    \
    X(5, char, username, [64])                                                                     \
    X(5, char, userpwd, [64])                                                                      \
    X(9, uint32_t, user_type, )                                                                    \
    X(5, uint8_t, userpwdaswifipwd, )                                                              \
    X(5, uint8_t, userpwd_encrypt, )                                                               \
    X(5, uint8_t, userpwd_encrypt_type, )                                                          \
    X(4, char, pwd_random, [8])                                                                    \
    X(4, uint8_t, is_sup_pwdPro, )                                                                 \
    X(5, char, resved, [489])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct misc_user {
    WEBMGMT_MISC_USER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_user;
WEBMGMT_STATIC_ASSERT(sizeof(misc_user) == 772, "misc_user layout");

#define WEBMGMT_MISC_ACTIMER_MEMBERS(X)                                                            \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, sys_ac_discovery_timeout, )                                                      \
    X(5, uint8_t, sys_ac_echo_interval, )                                                          \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct misc_actimer {
    WEBMGMT_MISC_ACTIMER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_actimer;
WEBMGMT_STATIC_ASSERT(sizeof(misc_actimer) == 508, "misc_actimer layout");

#define WEBMGMT_MISC_DMZ_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, dmz_enable, )                                                                    \
    X(5, char, dmz_host, [20])                                                                     \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct misc_dmz {
    WEBMGMT_MISC_DMZ_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_dmz;
WEBMGMT_STATIC_ASSERT(sizeof(misc_dmz) == 528, "misc_dmz layout");

#define WEBMGMT_MISC_LOG_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, log_enable, )                                                                    \
    X(5, uint8_t, remote_log_enable, )                                                             \
    X(5, char, remote_log_server_host, [50])                                                       \
    X(5, char, resved, [500])
typedef struct misc_log {
    WEBMGMT_MISC_LOG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_log;
WEBMGMT_STATIC_ASSERT(sizeof(misc_log) == 556, "misc_log layout");

#define WEBMGMT_MISC_NTP_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, enable, )                                                                        \
    X(5, char, ntp_tz, [20])                                                                       \
    X(5, uint8_t, ntp_server_mode, )                                                               \
    X(5, char, ntp_server_addr, [128])                                                             \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct misc_ntp {
    WEBMGMT_MISC_NTP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ntp;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ntp) == 656, "misc_ntp layout");

/* Remote management: the web switch is listed; the telnet switch, port, the remote host
 * name ("<host>.remote"), the remote URL ("http://<remote host><product text>") and the
 * server address are set by the remote-access form and printed by the misc view. */
#define WEBMGMT_MISC_REMOTE_MEMBERS(X)                                                             \
    X(5, uint8_t, enable_web, )                                                                    \
    X(0, uint8_t, enable_telnet, )                                                                 \
    X(0, uint16_t, remote_port, )                                                                  \
    X(0, char, subdomain, [128])                                                                   \
    X(0, char, web_url, [512])                                                                     \
    X(0, char, server_addr, [128])
typedef struct misc_remote {
    WEBMGMT_MISC_REMOTE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_remote;
WEBMGMT_STATIC_ASSERT(sizeof(misc_remote) == 772, "misc_remote layout");

#define WEBMGMT_MISC_CLOUD_MEMBERS(X)                                                              \
    X(5, uint8_t, enable, )                                                                        \
    X(5, char, server, [100])                                                                      \
    X(5, char, bind_code, [100])                                                                   \
    X(5, char, location_x, [50])                                                                   \
    X(5, char, location_y, [50])                                                                   \
    X(5, uint8_t, cloud_updata_ok, )                                                               \
    X(5, char, desc, [100])                                                                        \
    X(5, char, last_sw_ver, [256])                                                                 \
    X(5, char, sw_up_orderid, [100])                                                               \
    X(5, char, user_name, [32])                                                                    \
    X(5, char, user_pwd, [32])                                                                     \
    X(5, char, appid, [48])                                                                        \
    X(5, char, appsecret, [48])                                                                    \
    X(5, char, productid, [40])
typedef struct misc_cloud {
    WEBMGMT_MISC_CLOUD_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_cloud;
WEBMGMT_STATIC_ASSERT(sizeof(misc_cloud) == 958, "misc_cloud layout");

#define WEBMGMT_MISC_NAT_MEMBERS(X) X(5, uint8_t, enable, )
typedef struct misc_nat {
    WEBMGMT_MISC_NAT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_nat;
WEBMGMT_STATIC_ASSERT(sizeof(misc_nat) == 1, "misc_nat layout");

#define WEBMGMT_MISC_DDNS_MEMBERS(X)                                                               \
    X(5, uint8_t, enable, )                                                                        \
    X(5, char, user, [100])                                                                        \
    X(5, char, pwd, [100])                                                                         \
    X(5, char, ip, [50])                                                                           \
    X(5, char, domain, [128])                                                                      \
    X(5, uint8_t, usertype, )                                                                      \
    X(5, uint8_t, conn_status, )                                                                   \
    X(5, uint8_t, support_planet, )                                                                \
    X(5, uint8_t, wanid, )                                                                         \
    X(5, char, resved, [500])
typedef struct misc_ddns {
    WEBMGMT_MISC_DDNS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ddns;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ddns) == 883, "misc_ddns layout");

#define WEBMGMT_MISC_ALARM_MEMBERS(X)                                                              \
    X(5, uint8_t, alarm_suppression_enable, )                                                      \
    X(5, uint8_t, alarm_suppression_time, )                                                        \
    X(5, uint8_t, cpu_alarm_enable, )                                                              \
    X(5, uint8_t, mem_alarm_enable, )                                                              \
    X(5, uint8_t, alarm_cpu_rate, )                                                                \
    X(5, uint8_t, alarm_mem_rate, )                                                                \
    X(5, uint8_t, cpu_alarm_cumulative_max, )                                                      \
    X(5, uint8_t, mem_alarm_cumulative_max, )
typedef struct misc_alarm {
    WEBMGMT_MISC_ALARM_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_alarm;
WEBMGMT_STATIC_ASSERT(sizeof(misc_alarm) == 8, "misc_alarm layout");

/* Speed-up switches (hardware NAT, software cache, no-mangle), printed by the misc view. */
#define WEBMGMT_MISC_SPEEDUP_MEMBERS(X)                                                            \
    X(0, uint8_t, enable_hand, )                                                                   \
    X(0, uint8_t, enable_soft_cache, )                                                             \
    X(0, uint8_t, enable_soft_nomangle, )
typedef struct misc_speedup {
    WEBMGMT_MISC_SPEEDUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_speedup;
WEBMGMT_STATIC_ASSERT(sizeof(misc_speedup) == 3, "misc_speedup layout");

/* The device's own addressing when it is not the router (bypass mode); the switch is
 * stored before the addresses. */
#define WEBMGMT_MISC_BYPASS_MEMBERS(X)                                                             \
    X(0, uint8_t, enable, )                                                                        \
    X(0, uint8_t, stp, )                                                                           \
    X(0, uint8_t, conn_type, )                                                                     \
    X(0, uint8_t, pad_ipaddr, [1])                                                                 \
    X(0, ipaddr_field, ipaddr, )                                                                   \
    X(0, ipaddr_field, subnet, )                                                                   \
    X(0, ipaddr_field, gateway, )                                                                  \
    X(0, ipaddr_field, dns1, )                                                                     \
    X(0, ipaddr_field, dns2, )                                                                     \
    X(0, char, resved, [200])
typedef struct misc_bypass {
    WEBMGMT_MISC_BYPASS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_bypass;
WEBMGMT_STATIC_ASSERT(sizeof(misc_bypass) == 284, "misc_bypass layout");

/* `need_filter_firewall` is the switch of the duplicate checks of the rule-list forms. */
#define WEBMGMT_MISC_CONFIG_MEMBERS(X)                                                             \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, misc_user, sys_user, )                                                                    \
    X(0, misc_actimer, sys_actimer, )                                                              \
    X(0, misc_dmz, sys_dzm, )                                                                      \
    X(0, misc_log, sys_log, )                                                                      \
    X(0, misc_ntp, sys_ntp, )                                                                      \
    X(0, timereboot_config, sys_timereboot, )                                                      \
    X(0, misc_remote, sys_remote, )                                                                \
    X(5, uint8_t, enable_telnet, )                                                                 \
    X(0, misc_cloud, sys_cloud, )                                                                  \
    X(0, misc_ddns, sys_ddns, )                                                                    \
    X(0, misc_nat, sys_nat, )                                                                      \
    X(5, uint8_t, need_filter_firewall, )                                                          \
    X(0, misc_alarm, custom_alarm, )                                                               \
    X(5, uint8_t, custom_dbg, )                                                                    \
    X(0, misc_speedup, sys_speedup, )                                                              \
    X(0, uint8_t, pad_sys_bypass, [2])                                                             \
    X(0, misc_bypass, sys_bypass, )                                                                \
    X(0, char, room, [512])                                                                        \
    X(5, char, resved, [490])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct misc_config {
    WEBMGMT_MISC_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_config;
WEBMGMT_STATIC_ASSERT(sizeof(misc_config) == 7080, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, lock_location) == 132, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_user) == 136, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_actimer) == 908, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_dzm) == 1416, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_log) == 1944, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_ntp) == 2500, "misc_config layout");

/* --- misc_ext_config: the global client access list ------------------------------------- */

#define WEBMGMT_MISC_EXT_ACL_COUNT 128

#define WEBMGMT_MISC_EXT_ACL_MEMBERS(X)                                                            \
    X(1, int32_t, count, )                                                                         \
    X(0, int32_t, mode, )                                                                          \
    X(0, acl_entry, info, [WEBMGMT_MISC_EXT_ACL_COUNT])                                            \
    X(0, char, resved, [500])
typedef struct misc_ext_acl {
    WEBMGMT_MISC_EXT_ACL_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ext_acl;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ext_acl) == 119292, "the access list the store fills");

#define WEBMGMT_MISC_EXT_CONFIG_MEMBERS(X)                                                         \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, misc_ext_acl, acl_info, )                                                                 \
    X(0, char, resved, [500])
typedef struct misc_ext_config {
    WEBMGMT_MISC_EXT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ext_config;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ext_config) == 119928, "misc_ext_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_ext_config, lock_location) == 132, "misc_ext_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_ext_config, acl_info) == 136, "misc_ext_config layout");

/* Builders: each fills a table zeroed with clean_points() with the rows of one record
 * instance, in the order the pages and defaults files know them. */
WEBMGMT_API void WiFi_field(field_desc *table, wifi_config *config);
WEBMGMT_API void defap_field(field_desc *table, defap_config *config);
WEBMGMT_API void productinfo_field(field_desc *table, productinfo_config *config);
WEBMGMT_API void misc_field(field_desc *table, misc_config *config);
WEBMGMT_API void misc_ext_field(field_desc *table, misc_ext_config *config);
/* The AP template has no rows: the table is left as it is. */
WEBMGMT_API void aptemp_field(field_desc *table, void *config);

/* ===================================================================================== */
/* Network and rule-list record catalogue                                                */
/* ===================================================================================== */

/* Rule lists are a count and a fixed array of elements; the array's size is the capacity. */
#define WEBMGMT_RULE_COUNT 32
#define WEBMGMT_GROUP_COUNT 16
#define WEBMGMT_LAN_BIND_COUNT 32
#define WEBMGMT_LAN_PORTS 4
#define WEBMGMT_WAN_LINES 4

/* --- lan_config: LAN interface and DHCP servers ----------------------------------------- */

/* A DHCP server; the controller's server has the same layout as the device's own. */
#define WEBMGMT_LAN_DHCPSERVER_MEMBERS(X)                                                          \
    X(5, uint8_t, dhcp_server_enable, )                                                            \
    X(0, uint8_t, pad_dhcp_server_start_ipaddr, [3])                                               \
    X(6, ipaddr_field, dhcp_server_start_ipaddr, )                                                 \
    X(6, ipaddr_field, dhcp_server_end_ipaddr, )                                                   \
    X(6, ipaddr_field, dhcp_server_gateway, )                                                      \
    X(6, ipaddr_field, dhcp_server_dns1, )                                                         \
    X(6, ipaddr_field, dhcp_server_dns2, )                                                         \
    X(0, uint8_t, pad_dhcp_server_leasetime, [4])                                                  \
    X(8, uint64_t, dhcp_server_leasetime, )                                                        \
    X(7, uint32_t, dhcp_server_port, )                                                             \
    X(6, ipaddr_field, default_dhcp_server_start_ipaddr, )                                         \
    X(6, ipaddr_field, default_dhcp_server_end_ipaddr, )                                           \
    X(6, ipaddr_field, default_dhcp_server_gateway, )                                              \
    X(5, char, resved, [500])
typedef struct lan_dhcpserver {
    WEBMGMT_LAN_DHCPSERVER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_dhcpserver;
WEBMGMT_STATIC_ASSERT(sizeof(lan_dhcpserver) == 648, "lan_dhcpserver layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_dhcpserver, dhcp_server_leasetime) == 88,
                      "lan_dhcpserver layout");

/* A static DHCP lease. */
#define WEBMGMT_LAN_BIND_MEMBERS(X)                                                                \
    X(1, int32_t, id, )                                                                            \
    X(1, int32_t, lock_location, )                                                                 \
    X(4, uint8_t, devtype, )                                                                       \
    X(4, char, mac, [20])                                                                          \
    X(0, uint8_t, pad_ip, [3])                                                                     \
    X(6, ipaddr_field, ip, )                                                                       \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])
typedef struct lan_bind {
    WEBMGMT_LAN_BIND_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_bind;
WEBMGMT_STATIC_ASSERT(sizeof(lan_bind) == 748, "lan_bind layout");

#define WEBMGMT_LAN_BINDLIST_MEMBERS(X)                                                            \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, lan_bind, element, [WEBMGMT_LAN_BIND_COUNT])                                              \
    X(5, char, resved, [500])
typedef struct lan_bindlist {
    WEBMGMT_LAN_BINDLIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_bindlist;
WEBMGMT_STATIC_ASSERT(sizeof(lan_bindlist) == 24440, "lan_bindlist layout");

#define WEBMGMT_LAN_IPTV_MEMBERS(X)                                                                \
    X(4, uint8_t, m_enable, )                                                                      \
    X(0, uint8_t, pad_m_vlanid, [3])                                                               \
    X(9, uint32_t, m_vlanid, )                                                                     \
    X(5, char, eth_phy_name, [20])                                                                 \
    X(5, char, resved, [500])
typedef struct lan_iptv {
    WEBMGMT_LAN_IPTV_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_iptv;
WEBMGMT_STATIC_ASSERT(sizeof(lan_iptv) == 528, "lan_iptv layout");

#define WEBMGMT_LAN_VLAN_PORT_MEMBERS(X)                                                           \
    X(5, uint8_t, m_supportvlan, )                                                                 \
    X(5, uint8_t, m_haveport, )                                                                    \
    X(5, uint8_t, m_port_id, )                                                                     \
    X(0, uint8_t, pad_m_vlan_id, [1])                                                              \
    X(2, int16_t, m_vlan_id, )
typedef struct lan_vlan_port {
    WEBMGMT_LAN_VLAN_PORT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_vlan_port;
WEBMGMT_STATIC_ASSERT(sizeof(lan_vlan_port) == 6, "lan_vlan_port layout");

#define WEBMGMT_LAN_VLAN_MEMBERS(X) X(0, lan_vlan_port, port, [WEBMGMT_LAN_PORTS])
typedef struct lan_vlan {
    WEBMGMT_LAN_VLAN_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_vlan;
WEBMGMT_STATIC_ASSERT(sizeof(lan_vlan) == 24, "lan_vlan layout");

#define WEBMGMT_LAN_CONFIG_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, char, lan_name, [20])                                                                     \
    X(5, char, eth_phy_name, [20])                                                                 \
    X(1, int32_t, lan_addr_type, )                                                                 \
    X(6, ipaddr_field, ipaddr, )                                                                   \
    X(6, ipaddr_field, subnet, )                                                                   \
    X(6, ipaddr_field, gateway, )                                                                  \
    X(6, ipaddr_field, dns1, )                                                                     \
    X(6, ipaddr_field, dns2, )                                                                     \
    X(5, uint8_t, stp, )                                                                           \
    X(0, uint8_t, pad_ac_enable, [3])                                                              \
    X(1, int32_t, ac_enable, )                                                                     \
    X(6, ipaddr_field, acipaddr, )                                                                 \
    X(6, ipaddr_field, acsubnet, )                                                                 \
    X(0, uint8_t, pad_dev_dhcpserver, [4])                                                         \
    X(0, lan_dhcpserver, dev_dhcpserver, )                                                         \
    X(0, lan_dhcpserver, ac_dhcpserver, )                                                          \
    X(0, lan_bindlist, dhcp_server_bindlist, )                                                     \
    X(0, lan_bindlist, dhcp_server_acbindlist, )                                                   \
    X(5, uint8_t, conn_type, )                                                                     \
    X(0, uint8_t, pad_m_iptv, [3])                                                                 \
    X(0, lan_iptv, m_iptv, )                                                                       \
    X(5, uint8_t, enable_ipv6, )                                                                   \
    X(0, uint8_t, pad_ipaddr6, [3])                                                                \
    X(12, ip6addr_field, ipaddr6, )                                                                \
    X(5, uint8_t, ipaddr6_prefix, )                                                                \
    X(0, uint8_t, pad_ipaddr6_local, [3])                                                          \
    X(12, ip6addr_field, ipaddr6_local, )                                                          \
    X(5, uint8_t, ipaddr6_local_prefix, )                                                          \
    X(0, uint8_t, pad_gateway6, [3])                                                               \
    X(12, ip6addr_field, gateway6, )                                                               \
    X(5, uint8_t, gateway6_prefix, )                                                               \
    X(5, uint8_t, enable_ipv6_dns, )                                                               \
    X(0, uint8_t, pad_dns61, [2])                                                                  \
    X(12, ip6addr_field, dns61, )                                                                  \
    X(12, ip6addr_field, dns62, )                                                                  \
    X(5, uint8_t, conn_type6, )                                                                    \
    X(5, uint8_t, enable_dhcp6, )                                                                  \
    X(0, uint8_t, pad_dhcp6_ipstart, [2])                                                          \
    X(12, ip6addr_field, dhcp6_ipstart, )                                                          \
    X(12, ip6addr_field, dhcp6_ipend, )                                                            \
    X(9, uint32_t, dhcp6_lease, )                                                                  \
    X(5, uint8_t, enable_radvd, )                                                                  \
    X(5, uint8_t, ra_flag_M, )                                                                     \
    X(5, uint8_t, ra_flag_O, )                                                                     \
    X(5, uint8_t, ra_flag_A, )                                                                     \
    X(5, uint8_t, disable_ipv4_dns, )                                                              \
    X(0, uint8_t, pad_lan_vlan, [1])                                                               \
    X(0, lan_vlan, lan_vlan, )                                                                     \
    X(0, uint8_t, pad_default_ipaddr, [2])                                                         \
    X(6, ipaddr_field, default_ipaddr, )                                                           \
    X(6, ipaddr_field, default_subnet, )                                                           \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [4])
typedef struct lan_config {
    WEBMGMT_LAN_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_config;
WEBMGMT_STATIC_ASSERT(sizeof(lan_config) == 51800, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, lock_location) == 132, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, dev_dhcpserver) == 304, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, ac_dhcpserver) == 952, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, dhcp_server_bindlist) == 1600, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, dhcp_server_acbindlist) == 26040, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, m_iptv) == 50484, "lan_config layout");

/* --- wan_config: up to four WAN lines --------------------------------------------------- */

/* One WAN line. The ping, IPsec, PPTP and L2TP pass-through switches are set by the WAN
 * form and printed by the WAN view; no field table lists them. */
#define WEBMGMT_WAN_LINE_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, enable, )                                                                        \
    X(5, uint8_t, conn_type, )                                                                     \
    X(5, char, phy_name, [20])                                                                     \
    X(0, uint8_t, pad_fixed_mtu, [2])                                                              \
    X(9, uint32_t, fixed_mtu, )                                                                    \
    X(9, uint32_t, dhcp_mtu, )                                                                     \
    X(6, ipaddr_field, ipaddr, )                                                                   \
    X(6, ipaddr_field, subnet, )                                                                   \
    X(6, ipaddr_field, gateway, )                                                                  \
    X(5, uint8_t, dnsmode, )                                                                       \
    X(0, uint8_t, pad_dns1, [3])                                                                   \
    X(6, ipaddr_field, dns1, )                                                                     \
    X(6, ipaddr_field, dns2, )                                                                     \
    X(5, char, ppp_username, [64])                                                                 \
    X(5, char, ppp_userpwd, [64])                                                                  \
    X(5, char, ppp_service_name, [64])                                                             \
    X(5, char, ppp_ac_name, [64])                                                                  \
    X(7, uint32_t, wan_upload_bandwidth, )                                                         \
    X(7, uint32_t, wan_download_bandwidth, )                                                       \
    X(5, uint8_t, wan_track_enable, )                                                              \
    X(0, uint8_t, pad_wan_track_ip1, [3])                                                          \
    X(6, ipaddr_field, wan_track_ip1, )                                                            \
    X(6, ipaddr_field, wan_track_ip2, )                                                            \
    X(9, uint32_t, wan_dns_priority, )                                                             \
    X(9, uint32_t, wan_line_weight, )                                                              \
    X(5, uint8_t, enable_wan_access_web, )                                                         \
    X(0, uint8_t, pad_wan_access_web_port, [3])                                                    \
    X(9, uint32_t, wan_access_web_port, )                                                          \
    X(5, uint8_t, enable_mac_clone, )                                                              \
    X(5, char, clone_mac, [20])                                                                    \
    X(0, uint8_t, enable_ping_wan, )                                                               \
    X(0, uint8_t, enable_ipsec, )                                                                  \
    X(0, uint8_t, enable_pptp, )                                                                   \
    X(0, uint8_t, enable_l2tp, )                                                                   \
    X(5, uint8_t, wan_port, )                                                                      \
    X(5, uint8_t, enable_ipv6, )                                                                   \
    X(0, uint8_t, pad_ipaddr6, [1])                                                                \
    X(12, ip6addr_field, ipaddr6, )                                                                \
    X(5, uint8_t, ipaddr6_prefix, )                                                                \
    X(0, uint8_t, pad_ipaddr6_local, [3])                                                          \
    X(12, ip6addr_field, ipaddr6_local, )                                                          \
    X(5, uint8_t, ipaddr6_local_prefix, )                                                          \
    X(0, uint8_t, pad_gateway6, [3])                                                               \
    X(12, ip6addr_field, gateway6, )                                                               \
    X(5, uint8_t, gateway6_prefix, )                                                               \
    X(5, uint8_t, enable_ipv6_dns, )                                                               \
    X(0, uint8_t, pad_dns61, [2])                                                                  \
    X(12, ip6addr_field, dns61, )                                                                  \
    X(12, ip6addr_field, dns62, )                                                                  \
    X(5, char, resved, [499])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct wan_line {
    WEBMGMT_WAN_LINE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wan_line;
WEBMGMT_STATIC_ASSERT(sizeof(wan_line) == 1116, "wan_line layout");

#define WEBMGMT_WAN_CONFIG_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, wan_line, wanconfig, [WEBMGMT_WAN_LINES])                                                 \
    X(5, char, resved, [500])
typedef struct wan_config {
    WEBMGMT_WAN_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wan_config;
WEBMGMT_STATIC_ASSERT(sizeof(wan_config) == 5100, "wan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wan_config, lock_location) == 132, "wan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wan_config, wanconfig) == 136, "wan_config layout");

/* --- Rule lists ------------------------------------------------------------------------- */

#define WEBMGMT_WEEKDAYS(X)                                                                        \
    X(4, uint8_t, weekday1, )                                                                      \
    X(4, uint8_t, weekday2, )                                                                      \
    X(4, uint8_t, weekday3, )                                                                      \
    X(4, uint8_t, weekday4, )                                                                      \
    X(4, uint8_t, weekday5, )                                                                      \
    X(4, uint8_t, weekday6, )                                                                      \
    X(4, uint8_t, weekday7, )

#define WEBMGMT_RULE_HEAD(X)                                                                       \
    X(1, int32_t, lock_location, )                                                                 \
    X(1, int32_t, id, )                                                                            \
    X(4, char, name, [200])

#define WEBMGMT_QOS_RULE_MEMBERS(X)                                                                \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, uint8_t, control_type, )                                                                  \
    X(4, char, devmac, [20])                                                                       \
    X(4, uint8_t, ipcontrol, )                                                                     \
    X(2, int16_t, ipgroup_id, )                                                                    \
    X(6, ipaddr_field, devstartip, )                                                               \
    X(6, ipaddr_field, devendip, )                                                                 \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(0, uint8_t, pad_bw_up, [3])                                                                  \
    X(1, int32_t, bw_up, )                                                                         \
    X(1, int32_t, bw_down, )                                                                       \
    X(4, uint8_t, bw_shared_mode, )                                                                \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct qos_rule {
    WEBMGMT_QOS_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} qos_rule;
WEBMGMT_STATIC_ASSERT(sizeof(qos_rule) == 1008, "qos_rule layout");

#define WEBMGMT_FWURL_RULE_MEMBERS(X)                                                              \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, char, url, [128])                                                                         \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct fwurl_rule {
    WEBMGMT_FWURL_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwurl_rule;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_rule) == 1068, "fwurl_rule layout");

#define WEBMGMT_FWMAC_RULE_MEMBERS(X)                                                              \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, char, devmac, [20])                                                                       \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct fwmac_rule {
    WEBMGMT_FWMAC_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwmac_rule;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_rule) == 960, "fwmac_rule layout");

#define WEBMGMT_TIMEGROUP_MEMBERS(X)                                                               \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct timegroup_entry {
    WEBMGMT_TIMEGROUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} timegroup_entry;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_entry) == 936, "timegroup_entry layout");

#define WEBMGMT_IPGROUP_MEMBERS(X)                                                                 \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(6, ipaddr_field, startip, )                                                                  \
    X(6, ipaddr_field, endip, )                                                                    \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])
typedef struct ipgroup_entry {
    WEBMGMT_IPGROUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ipgroup_entry;
WEBMGMT_STATIC_ASSERT(sizeof(ipgroup_entry) == 940, "ipgroup_entry layout");

#define WEBMGMT_VSIPPORT_RULE_MEMBERS(X)                                                           \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(6, ipaddr_field, devip, )                                                                    \
    X(4, uint8_t, protocol, )                                                                      \
    X(0, uint8_t, pad_devinnerfromport, [3])                                                       \
    X(1, int32_t, devinnerfromport, )                                                              \
    X(1, int32_t, devinnertoport, )                                                                \
    X(1, int32_t, devexternfromport, )                                                             \
    X(1, int32_t, devexterntoport, )                                                               \
    X(4, uint8_t, wanid, )                                                                         \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct vsipport_rule {
    WEBMGMT_VSIPPORT_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} vsipport_rule;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_rule) == 948, "vsipport_rule layout");

#define WEBMGMT_FWIPPORT_RULE_MEMBERS(X)                                                           \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, uint8_t, ipcontrol, )                                                                     \
    X(0, uint8_t, pad_ipgroup_id, [1])                                                             \
    X(2, int16_t, ipgroup_id, )                                                                    \
    X(6, ipaddr_field, devstartip, )                                                               \
    X(6, ipaddr_field, devendip, )                                                                 \
    X(1, int32_t, devfromport, )                                                                   \
    X(1, int32_t, devtoport, )                                                                     \
    X(4, uint8_t, protocol, )                                                                      \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct fwipport_rule {
    WEBMGMT_FWIPPORT_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwipport_rule;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_rule) == 984, "fwipport_rule layout");

/* The lists: a 16-bit count (32-bit in the two group lists), the elements, reserved room. */
#define WEBMGMT_RULE_LIST_MEMBERS(X, type, capacity)                                               \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, type, element, [capacity])                                                                \
    X(5, char, resved, [500])
#define WEBMGMT_GROUP_LIST_MEMBERS(X, type, capacity)                                              \
    X(1, int32_t, count, )                                                                         \
    X(0, type, element, [capacity])                                                                \
    X(5, char, resved, [500])
typedef struct qos_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, qos_rule, WEBMGMT_RULE_COUNT)
} qos_list;
WEBMGMT_STATIC_ASSERT(sizeof(qos_list) == 32760, "qos_list layout");
typedef struct fwurl_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, fwurl_rule, WEBMGMT_RULE_COUNT)
} fwurl_list;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_list) == 34680, "fwurl_list layout");
typedef struct fwmac_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, fwmac_rule, WEBMGMT_RULE_COUNT)
} fwmac_list;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_list) == 31224, "fwmac_list layout");
typedef struct vsipport_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, vsipport_rule, WEBMGMT_RULE_COUNT)
} vsipport_list;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_list) == 30840, "vsipport_list layout");
/* The IP/port filter list has no reserved room of its own. */
#define WEBMGMT_FWIPPORT_LIST_MEMBERS(X)                                                           \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, fwipport_rule, element, [WEBMGMT_RULE_COUNT])
typedef struct fwipport_list {
    WEBMGMT_FWIPPORT_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwipport_list;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_list) == 31492, "fwipport_list layout");
typedef struct timegroup_list {
    WEBMGMT_GROUP_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, timegroup_entry, WEBMGMT_GROUP_COUNT)
} timegroup_list;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_list) == 15480, "timegroup_list layout");
typedef struct ipgroup_list {
    WEBMGMT_GROUP_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, ipgroup_entry, WEBMGMT_GROUP_COUNT)
} ipgroup_list;
WEBMGMT_STATIC_ASSERT(sizeof(ipgroup_list) == 15544, "ipgroup_list layout");

#define WEBMGMT_QOS_CONFIG_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_qos, [3])                                                                    \
    X(0, qos_list, qos, )                                                                          \
    X(5, char, resved, [500])
typedef struct qos_config {
    WEBMGMT_QOS_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} qos_config;
WEBMGMT_STATIC_ASSERT(sizeof(qos_config) == 33400, "qos_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(qos_config, lock_location) == 132, "qos_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(qos_config, qos) == 140, "qos_config layout");

#define WEBMGMT_FWURL_CONFIG_MEMBERS(X)                                                            \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_fwurl, [3])                                                                  \
    X(0, fwurl_list, fwurl, )                                                                      \
    X(5, char, resved, [500])
typedef struct fwurl_config {
    WEBMGMT_FWURL_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwurl_config;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_config) == 35320, "fwurl_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwurl_config, lock_location) == 132, "fwurl_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwurl_config, fwurl) == 140, "fwurl_config layout");

#define WEBMGMT_FWMAC_CONFIG_MEMBERS(X)                                                            \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_fwmac, [3])                                                                  \
    X(0, fwmac_list, fwmac, )                                                                      \
    X(5, char, resved, [500])
typedef struct fwmac_config {
    WEBMGMT_FWMAC_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwmac_config;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_config) == 31864, "fwmac_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwmac_config, lock_location) == 132, "fwmac_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwmac_config, fwmac) == 140, "fwmac_config layout");

#define WEBMGMT_TIMEGROUP_CONFIG_MEMBERS(X)                                                        \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, timegroup_list, usertimegroup, )                                                          \
    X(5, char, resved, [500])
typedef struct timegroup_config {
    WEBMGMT_TIMEGROUP_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} timegroup_config;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_config) == 16116, "timegroup_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(timegroup_config, lock_location) == 132, "timegroup_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(timegroup_config, usertimegroup) == 136, "timegroup_config layout");

#define WEBMGMT_IPPORT_CONFIG_MEMBERS(X)                                                           \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, ipgroup_list, useripgroup, )                                                              \
    X(0, char, resved, [500])
typedef struct ipport_config {
    WEBMGMT_IPPORT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ipport_config;
WEBMGMT_STATIC_ASSERT(sizeof(ipport_config) == 16180, "ipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ipport_config, lock_location) == 132, "ipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ipport_config, useripgroup) == 136, "ipport_config layout");

#define WEBMGMT_VSIPPORT_CONFIG_MEMBERS(X)                                                         \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, enable, )                                                                        \
    X(0, uint8_t, pad_vsipport, [3])                                                               \
    X(0, vsipport_list, vsipport, )                                                                \
    X(5, char, resved, [500])
typedef struct vsipport_config {
    WEBMGMT_VSIPPORT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} vsipport_config;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_config) == 31480, "vsipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(vsipport_config, lock_location) == 132, "vsipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(vsipport_config, vsipport) == 140, "vsipport_config layout");

#define WEBMGMT_FWIPPORT_CONFIG_MEMBERS(X)                                                         \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_fwipport, [3])                                                               \
    X(0, fwipport_list, fwipport, )                                                                \
    X(5, char, resved, [500])
typedef struct fwipport_config {
    WEBMGMT_FWIPPORT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwipport_config;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_config) == 32132, "fwipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwipport_config, lock_location) == 132, "fwipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwipport_config, fwipport) == 140, "fwipport_config layout");

WEBMGMT_API void lan_field(field_desc *table, lan_config *config);
WEBMGMT_API void wan_field(field_desc *table, wan_config *config);
WEBMGMT_API void qos_field(field_desc *table, qos_config *config);
WEBMGMT_API void fwurl_field(field_desc *table, fwurl_config *config);
WEBMGMT_API void fwmac_field(field_desc *table, fwmac_config *config);
WEBMGMT_API void timegroup_field(field_desc *table, timegroup_config *config);
WEBMGMT_API void ipport_field(field_desc *table, ipport_config *config);
WEBMGMT_API void vsipport_field(field_desc *table, vsipport_config *config);
WEBMGMT_API void fwipport_field(field_desc *table, fwipport_config *config);

/* ===================================================================================== */
/* Form framework, list filters and forms                                                */
/* ===================================================================================== */

/* The rows of a form's binding table: no form binds more variables than this. */
#define WEBMGMT_FORM_ROWS 150

/* Result of an element form refused for a duplicate name or duplicate content. */
#define WEBMGMT_FORM_DUPLICATE 10

/* Converts `value` by row.type into the member row.address (row.size bytes wide); see the
 * conversion codes of field_desc. Returns the converted number (0 for texts and MACs). A
 * member narrower than its code needs is left untouched. */
WEBMGMT_API int save_data_base(field_desc row, const char *value);

/* --- Working elements of the rule-list forms ---------------------------------------------
 * One zero-filled element per add or modify: one member per form variable. Ids, switches,
 * ports, flags are 32-bit numbers (code 1); names and marks 200-byte texts, dotted IPv4
 * addresses 16-byte texts, times of day 10-byte texts (code 4). The store's Add and Modify
 * calls take them and fill the list's slot from them. */
#define WEBMGMT_ITEM_NAME 200
#define WEBMGMT_ITEM_IP 16
#define WEBMGMT_ITEM_TIME 10
#define WEBMGMT_ITEM_MAC 20
#define WEBMGMT_ITEM_URL 128
#define WEBMGMT_WEEKDAY_COUNT 7

/* The copy of a time group that the filter forms carry ("t_id", "t_name", ...). */
typedef struct rule_timegroup_copy {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT]; /* Monday .. Sunday */
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} rule_timegroup_copy;
WEBMGMT_STATIC_ASSERT(sizeof(rule_timegroup_copy) == 456, "rule_timegroup_copy layout");

/* The copy of an IP group ("ip_id", "ip_name", ... or "ipgroup_name", ...). */
typedef struct rule_ipgroup_copy {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char start_ip[WEBMGMT_ITEM_IP];
    char end_ip[WEBMGMT_ITEM_IP];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} rule_ipgroup_copy;
WEBMGMT_STATIC_ASSERT(sizeof(rule_ipgroup_copy) == 440, "rule_ipgroup_copy layout");

/* Port forwarding ("extren_Port_From" and "extren_Port_To" fill the external range). */
typedef struct vsipport_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    int32_t protocol;
    char innerip[WEBMGMT_ITEM_IP];
    int32_t extern_port_from;
    int32_t extern_port_to;
    int32_t inner_port_from;
    int32_t inner_port_to;
    int32_t status;
    char mark[WEBMGMT_ITEM_NAME];
    int32_t wanid;
    int32_t enable;
} vsipport_item;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_item) == 652, "vsipport_item layout");

/* IP/port filter. */
typedef struct fwipport_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    int32_t ipcontrol; /* 1: the IP group ipgroup_id, else the own range startip..endip */
    int32_t ipgroup_id;
    char ipname[WEBMGMT_ITEM_NAME];
    int32_t timecontrol; /* 0 always, 1 the time group timegroup_id, else the own schedule */
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    rule_timegroup_copy t;
    rule_ipgroup_copy ip;
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    char startip[WEBMGMT_ITEM_IP];
    char endip[WEBMGMT_ITEM_IP];
    int32_t startport;
    int32_t endport;
    int32_t protocol;
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
    int32_t status;
} fwipport_item;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_item) == 2016, "fwipport_item layout");

/* IP group. */
typedef struct ipgroup_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char start_ip[WEBMGMT_ITEM_IP];
    char end_ip[WEBMGMT_ITEM_IP];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} ipgroup_item;
WEBMGMT_STATIC_ASSERT(sizeof(ipgroup_item) == 440, "ipgroup_item layout");

/* Time group. */
typedef struct timegroup_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} timegroup_item;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_item) == 456, "timegroup_item layout");

/* MAC filter; `devmac` is the MAC as text. */
typedef struct fwmac_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    char devmac[WEBMGMT_ITEM_MAC];
    int32_t timecontrol;
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    int32_t status;
    char mark[WEBMGMT_ITEM_NAME];
    rule_timegroup_copy t;
} fwmac_item;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_item) == 1340, "fwmac_item layout");

/* URL filter; the IP group copy comes as "ipgroup_name", ... (its id is not sent). */
typedef struct fwurl_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    char url[WEBMGMT_ITEM_URL];
    int32_t ipgroup_id;
    rule_ipgroup_copy ipgroup;
    rule_timegroup_copy t;
    int32_t timecontrol;
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    int32_t status;
    int32_t enable;
    char mark[WEBMGMT_ITEM_NAME];
} fwurl_item;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_item) == 1896, "fwurl_item layout");

/* QoS; "bw_share_mode" fills bw_share_mode. */
typedef struct qos_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    int32_t control_type;
    int32_t ipcontrol;
    int32_t ipgroup_id;
    char ipname[WEBMGMT_ITEM_NAME];
    rule_ipgroup_copy ip;
    int32_t timecontrol;
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    rule_timegroup_copy t;
    char devmac[WEBMGMT_ITEM_MAC];
    char startip[WEBMGMT_ITEM_IP];
    char endip[WEBMGMT_ITEM_IP];
    int32_t bw_up;
    int32_t bw_down;
    int32_t bw_share_mode;
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    int32_t status;
    int32_t enable;
    char mark[WEBMGMT_ITEM_NAME];
} qos_item;
WEBMGMT_STATIC_ASSERT(sizeof(qos_item) == 2040, "qos_item layout");

/* The section records of the rule lists, as the CGI program fetched them from the store.
 * `misc->need_filter_firewall` is the duplicate-check switch (0: no check); a null misc
 * record means no check. Members the called form does not use may be null. */
typedef struct rule_config_set {
    misc_config *misc;
    vsipport_config *vsipport;
    fwipport_config *fwipport;
    ipport_config *ipgroup;
    timegroup_config *timegroup;
    fwurl_config *fwurl;
    fwmac_config *fwmac;
    qos_config *qos;
} rule_config_set;

/* --- Duplicate filters ------------------------------------------------------------------ */

/* List kinds of filterate_name(): which record `list` points to. */
#define WEBMGMT_KIND_TIMEGROUP 1 /* timegroup_config */
#define WEBMGMT_KIND_IPGROUP 2   /* ipport_config */
#define WEBMGMT_KIND_QOS 3       /* qos_config: never a duplicate */
#define WEBMGMT_KIND_FWURL 4     /* fwurl_config */
#define WEBMGMT_KIND_FWMAC 5     /* fwmac_config */
#define WEBMGMT_KIND_FWIPPORT 6  /* fwipport_config */
#define WEBMGMT_KIND_VSIPPORT 7  /* vsipport_config */
#define WEBMGMT_KIND_ACL 8       /* wifi_acllist of one radio; the caller holds the lock */

/* 0 when no element of the list other than the one with id `id` bears `name`, -1 when one
 * does, when the list's lock file cannot be opened (after printing "Cannot Lock file %s")
 * or for an unknown kind. The scan runs under a write lock on the list's lock file. */
WEBMGMT_API int filterate_name(const void *list, const char *name, int id, int kind);
/* 1 when a1 == b1 and a2 == b2 (a protocol and its sub-value), else 0. */
WEBMGMT_API int filterate_prot(int a1, int a2, int b1, int b2);
/* 1 when the texts a1 and b1, and a2 and b2, are equal (the ends of an address range). */
WEBMGMT_API int filterate_ip(const char *a1, const char *a2, const char *b1, const char *b2);

/* A rule's time restriction in a comparable form; zero it before filling it. */
typedef struct schedule_block {
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT]; /* Monday .. Sunday, 0 or 1 */
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
} schedule_block;
WEBMGMT_STATIC_ASSERT(sizeof(schedule_block) == 48, "schedule_block layout");

/* Fills `block` from the time group(s) with id `group_id` of config->timegroup (the last
 * such group wins); leaves it as it is when there is none. Returns 0. */
WEBMGMT_API int get_time_from_timegroup(schedule_block *block, int group_id,
                                        const rule_config_set *config);
/* Fills `block` from seven one-byte weekday flags and the 10-byte start and end texts. */
WEBMGMT_API void copy_time_from_config(schedule_block *block, const uint8_t *weekdays,
                                       const char *start_time, const char *end_time);

/* Content filters: 0 when `item` duplicates no other element of the list, -1 when it does. */
WEBMGMT_API int filterate_vsipport_data(const vsipport_config *list, const vsipport_item *item);
WEBMGMT_API int filterate_ipgroup_data(const ipport_config *list, const ipgroup_item *item);
WEBMGMT_API int filterate_timegroup_data(const timegroup_config *list,
                                         const timegroup_item *item);
WEBMGMT_API int filterate_fwipport_data(const fwipport_config *list, const fwipport_item *item,
                                        const rule_config_set *config);
WEBMGMT_API int filterate_fwmac_data(const fwmac_config *list, const fwmac_item *item,
                                     const rule_config_set *config);

/* --- Rule-list forms ---------------------------------------------------------------------
 * Switch forms set the list's master switch ("enable" or "mode") and save the list; they
 * return 0. Element forms: op -1 deletes the element named by "id", -2 deletes all (both
 * return 0 and make no save call), 0 adds, any other op modifies. An add or modify returns
 * WEBMGMT_FORM_DUPLICATE (nothing stored) for a duplicate name or content while the
 * duplicate-check switch is on, else the store's result of the add or modify. */
WEBMGMT_API int save_vsipport_config(vsipport_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_vsipport_config_element(vsipport_config *list, int op,
                                             const form_pair *pairs, int count,
                                             rule_config_set *config);
WEBMGMT_API int save_fwipport_config(fwipport_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_fwipport_config_element(fwipport_config *list, int op,
                                             const form_pair *pairs, int count,
                                             rule_config_set *config);
/* The two group lists are taken from the config set (config->ipgroup, config->timegroup). */
WEBMGMT_API int save_ipgroup_config_element(rule_config_set *config, int op,
                                            const form_pair *pairs, int count);
WEBMGMT_API int save_timegroup_config_element(rule_config_set *config, int op,
                                              const form_pair *pairs, int count);
WEBMGMT_API int save_fwurl_config(fwurl_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_fwurl_config_element(fwurl_config *list, int op, const form_pair *pairs,
                                          int count, rule_config_set *config);
WEBMGMT_API int save_fwmac_config(fwmac_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_fwmac_config_element(fwmac_config *list, int op, const form_pair *pairs,
                                          int count, rule_config_set *config);
WEBMGMT_API int save_qos_config(qos_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_qos_config_element(qos_config *list, int op, const form_pair *pairs,
                                        int count, rule_config_set *config);

/* ===================================================================================== */
/* Configuration views                                                                   */
/* ===================================================================================== */

/* Views print one configuration section as a JSON document on standard output. They only
 * read the record the caller fetched from the configuration store, and report nothing. */

/* System views. */
WEBMGMT_API void printf_ProductInfo_json(const productinfo_config *config);
WEBMGMT_API void printf_Misc_json(const misc_config *config);
WEBMGMT_API void printf_Dmz_json(const misc_config *config);
WEBMGMT_API void printf_DDNS_json(const misc_config *config);
WEBMGMT_API void printf_NAT_json(const misc_config *config);
/* The roaming settings of the wireless record. */
WEBMGMT_API void printf_kvr_json(const wifi_config *config);

/* Rule-list views: every slot of the table is printed, whatever the count. */
WEBMGMT_API void printf_VsIpport_json(const vsipport_config *config);
WEBMGMT_API void printf_FwIpport_json(const fwipport_config *config);
WEBMGMT_API void printf_IpGroup_json(const ipport_config *config);
WEBMGMT_API void printf_TimeGroup_json(const timegroup_config *config);
WEBMGMT_API void printf_FwMac_json(const fwmac_config *config);
WEBMGMT_API void printf_FwUrl_json(const fwurl_config *config);
WEBMGMT_API void printf_Qos_json(const qos_config *config);

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

/* ===================================================================================== */
/* Command execution and processes                                                       */
/* ===================================================================================== */

/* One process as the /proc scanner sees it. */
typedef struct proc_entry {
    int32_t pid;
    char user[9];  /* user name or numeric uid, cut to 8 characters */
    char state[4]; /* state letter, ' ' or 'W', '<' 'N' or ' ', NUL */
    uint32_t rss;  /* kilobytes */
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
