#include "cgi_common.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const char *reason_of(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 429:
        return "Too Many Requests";
    case 500:
        return "Internal Server Error";
    case 503:
        return "Service Unavailable";
    default:
        return "Error";
    }
}

void cgi_begin_json(int status, const char *extra) {
    printf("Status: %d %s\r\n", status, reason_of(status));
    printf("Content-Type: application/json\r\n");
    printf("Cache-Control: no-store\r\n");
    if (extra) fputs(extra, stdout);
    printf("\r\n");
}

void cgi_print_json_string(const char *text) {
    putchar('"');
    for (const unsigned char *p = (const unsigned char *)text; *p; ++p) {
        if (*p == '"' || *p == '\\')
            printf("\\%c", *p);
        else if (*p < 0x20)
            printf("\\u%04x", *p);
        else
            putchar(*p);
    }
    putchar('"');
}

void cgi_reply_error(int status, const char *message) {
    cgi_begin_json(status, NULL);
    printf("{\"error\":");
    cgi_print_json_string(message);
    printf("}\n");
}

static int is_post(void) {
    const char *method = getenv("REQUEST_METHOD");
    return method && strcmp(method, "POST") == 0;
}

int cgi_require_post(void) {
    if (is_post()) return 0;
    cgi_begin_json(405, "Allow: POST\r\n");
    printf("{\"error\":\"use POST\"}\n");
    return -1;
}

int cgi_cookie(const char *name, char *out, size_t size) {
    const char *cookies = getenv("HTTP_COOKIE");
    size_t name_len = strlen(name);
    if (!cookies || size == 0) return -1;
    for (const char *p = cookies; *p;) {
        while (*p == ' ' || *p == ';')
            ++p;
        const char *end = strchr(p, ';');
        size_t len = end ? (size_t)(end - p) : strlen(p);
        if (len > name_len && strncmp(p, name, name_len) == 0 && p[name_len] == '=') {
            size_t value_len = len - name_len - 1;
            if (value_len >= size) return -1;
            memcpy(out, p + name_len + 1, value_len);
            out[value_len] = '\0';
            return 0;
        }
        p += len;
    }
    return -1;
}

int cgi_query_value(const char *name, char *out, size_t size) {
    char value[1024] = ""; /* what get_content_from_querystring may write */
    if (size == 0 || get_content_from_querystring(name, value) != 0 || strlen(value) >= size)
        return -1;
    memcpy(out, value, strlen(value) + 1);
    return 0;
}

int cgi_require_session(int state_changing) {
    if (state_changing) {
        char from_query[64], from_cookie[64];
        if (cgi_query_value("stork", from_query, sizeof from_query) != 0 ||
            cgi_cookie("stork", from_cookie, sizeof from_cookie) != 0 ||
            strcmp(from_query, from_cookie) != 0) {
            cgi_reply_error(401, "not logged in");
            return -1;
        }
    }
    if (check_token() != 0) {
        cgi_reply_error(401, "not logged in");
        return -1;
    }
    return 0;
}

int cgi_read_form(form_pair *pairs, int capacity) {
    return process_queue_n(pairs, capacity);
}

void cgi_free_form(form_pair *pairs, int count) {
    for (int i = 0; i < count; ++i) {
        free(pairs[i].name);
        free(pairs[i].value);
    }
}

const char *cgi_form_value(const form_pair *pairs, int count, const char *name) {
    for (int i = 0; i < count; ++i)
        if (strcmp(pairs[i].name, name) == 0) return pairs[i].value;
    return NULL;
}

int cgi_require_plain_values(const form_pair *pairs, int count) {
    for (int i = 0; i < count; ++i) {
        for (const unsigned char *p = (const unsigned char *)pairs[i].value; *p; ++p) {
            if (*p == '"' || *p == '\\' || *p < 0x20) {
                char message[200];
                snprintf(message, sizeof message,
                         "%.100s: quotes, backslashes and control characters are not allowed",
                         pairs[i].name);
                cgi_reply_error(400, message);
                return -1;
            }
        }
    }
    return 0;
}

/* "http://host[:port]" or "https://..." of this server, as browsers write Origin. */
static int own_origin(char *out, size_t size) {
    const char *host = getenv("HTTP_HOST");
    const char *https = getenv("HTTPS");
    if (!host || !*host) return -1;
    int secure = https && strcmp(https, "on") == 0;
    int n = snprintf(out, size, "%s://%s", secure ? "https" : "http", host);
    return n > 0 && (size_t)n < size ? 0 : -1;
}

int cgi_require_same_origin(void) {
    const char *site = getenv("HTTP_SEC_FETCH_SITE");
    const char *origin = getenv("HTTP_ORIGIN");
    const char *referer = getenv("HTTP_REFERER");
    char own[300];
    int ok = 1;
    if (site && strcmp(site, "same-origin") != 0 && strcmp(site, "none") != 0) ok = 0;
    if (ok && (origin || referer)) {
        if (own_origin(own, sizeof own) != 0) {
            ok = 0;
        } else if (origin) {
            ok = strcmp(origin, own) == 0;
        } else {
            size_t len = strlen(own);
            ok = strncmp(referer, own, len) == 0 && (referer[len] == '/' || !referer[len]);
        }
    }
    if (ok) return 0;
    cgi_reply_error(403, "requests from other sites are refused");
    return -1;
}

void cgi_print_system_view(const misc_config *record) {
    static misc_config copy; /* large: kept off the stack */
    copy = *record;
    memset(copy.sys_user.rootpwd, 0, sizeof copy.sys_user.rootpwd);
    printf_Misc_json(&copy);
}

const char *cgi_device_path(const char *device, char *out, size_t size) {
    const char *root = getenv("WEBMGMT_ROOT");
    snprintf(out, size, "%s%s", root ? root : "", device);
    return out;
}

int cgi_serve(cgi_view_fn print, const char *usage, cgi_form_fn apply, int capacity) {
    const char *method = getenv("REQUEST_METHOD");
    if (method && strcmp(method, "GET") == 0) {
        /* The session check reads the query string, which decoding would remove. */
        if (cgi_require_session(0) != 0) return 0;
        if (!usage) return print(NULL);
        char name[32];
        if (cgi_query_value("view", name, sizeof name) != 0) {
            cgi_reply_error(400, usage);
            return 0;
        }
        return print(name);
    }
    if (cgi_require_post() != 0 || cgi_require_session(1) != 0) return 0;
    form_pair *pairs = calloc((size_t)capacity, sizeof *pairs);
    if (!pairs) {
        cgi_reply_error(500, "out of memory");
        return 1;
    }
    int count = cgi_read_form(pairs, capacity);
    if (cgi_require_plain_values(pairs, count) == 0) apply(pairs, count);
    cgi_free_form(pairs, count);
    free(pairs);
    return 0;
}
