/*
 * What every demo CGI program shares: the reply's headers, JSON error answers, the session
 * check, decoding the form and reading single variables.
 */
#ifndef WM_CGI_COMMON_H
#define WM_CGI_COMMON_H

#include <stddef.h>

#include "config_data_api.h"
#include "webmgmt.h"

/* The most variables one request of the demo pages carries. */
#define CGI_MAX_PAIRS 128

/* Prints the CGI header block of a JSON reply: status, type, no caching, `extra` (whole
 * header lines ending in "\r\n", or NULL), then the blank line. */
void cgi_begin_json(int status, const char *extra);

/* Answers {"error":"message"} with `status`. */
void cgi_reply_error(int status, const char *message);

/* Prints `text` as a JSON string, quotes included. */
void cgi_print_json_string(const char *text);

/* 0 when the request is a POST; otherwise answers 405 and returns -1. */
int cgi_require_post(void);

/* 0 when the request belongs to a logged-in browser. Must run before cgi_read_form(), which
 * removes QUERY_STRING. A state-changing request must also carry the session token in the
 * query string, equal to the cookie's, so that a form posted from another site is refused.
 * Otherwise answers 401 {"error":"not logged in"} and returns -1. */
int cgi_require_session(int state_changing);

/* Copies the value of cookie `name` into `out`; 0 when found, -1 otherwise. */
int cgi_cookie(const char *name, char *out, size_t size);

/* Copies the query-string variable `name` into `out`; 0 when found, -1 otherwise. */
int cgi_query_value(const char *name, char *out, size_t size);

/* Decodes the request (body, then query string) into `pairs`; returns the count. */
int cgi_read_form(form_pair *pairs, int capacity);
void cgi_free_form(form_pair *pairs, int count);
/* The value of the first variable called `name`, or NULL. */
const char *cgi_form_value(const form_pair *pairs, int count, const char *name);

/* 0 when no value holds a double quote, a backslash or a control character. The views
 * print stored text as it stands, so such text would break the pages' JSON. Otherwise
 * answers 400 naming the variable and returns -1. */
int cgi_require_plain_values(const form_pair *pairs, int count);

/* 0 when the request comes from the console's own pages, or from no browser page at all
 * (a client that sends neither Origin, Referer nor Sec-Fetch-Site). A request whose
 * Sec-Fetch-Site is not same-origin, whose Origin is not this server's (or is "null"),
 * or, without Origin, whose Referer is another site's, is answered 403 and -1 returned.
 * Must run before cgi_read_form(), which removes HTTP_REFERER. */
int cgi_require_same_origin(void);

/* Prints the system section's view without the administrator's password: the browser never
 * needs it, and once hashed it is an unsalted digest that can be tried offline. */
void cgi_print_system_view(const misc_config *record);

/* The usual program of a settings page. A GET from a logged-in browser prints a view:
 * print(name) with the query's "view" variable, answering 400 with `usage` when there is
 * none (with `usage` NULL no name is read and print(NULL) is called). A POST from a
 * logged-in browser carrying its token is decoded (at most `capacity` pairs) and, when every
 * value is plain text, handed to apply. Returns the program's exit status. */
typedef int (*cgi_view_fn)(const char *name);
typedef void (*cgi_form_fn)(form_pair *pairs, int count);
int cgi_serve(cgi_view_fn print, const char *usage, cgi_form_fn apply, int capacity);

/* `device` (such as "/var/loginfail") inside WEBMGMT_ROOT when that is set. */
const char *cgi_device_path(const char *device, char *out, size_t size);

#endif
