/*
 * What the settings programs (system.cgi, wireless.cgi) share: checks of submitted values,
 * the refusal answer that names the field, and the request the library's form is given,
 * made only of variables that passed their checks.
 *
 * The library's forms store what they are sent; these programs refuse beforehand whatever
 * would break the device, answering 400 {"error":"...","field":"<variable>"} so that the
 * page shows the message beside the field. Nothing is stored then.
 */
#ifndef WM_SETTINGS_CHECK_H
#define WM_SETTINGS_CHECK_H

#include "cgi_common.h"

#include <arpa/inet.h>
#include <ctype.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The most variables a settings request carries (the radio page sends about a hundred). */
#define SETTINGS_MAX_PAIRS WEBMGMT_FORM_PAIRS

/* Answers the refusal of `field`. */
static inline void settings_refuse(const char *field, const char *message) {
    cgi_begin_json(400, NULL);
    printf("{\"error\":");
    cgi_print_json_string(message);
    printf(",\"field\":");
    cgi_print_json_string(field);
    printf("}\n");
}

/* A whole decimal number from min to max. */
static inline int settings_number(const char *text, long min, long max, long *out) {
    if (!text || !*text || strlen(text) > 11) return 0;
    char *end = NULL;
    errno = 0;
    long v = strtol(text, &end, 10);
    if (errno || *end || v < min || v > max) return 0;
    if (out) *out = v;
    return 1;
}

/* "0" or "1". */
static inline int settings_switch(const char *text) {
    return text && (strcmp(text, "0") == 0 || strcmp(text, "1") == 0);
}

/* Printable ASCII of min to max bytes (blanks allowed). */
static inline int settings_printable(const char *text, size_t min, size_t max) {
    if (!text) return 0;
    size_t n = strlen(text);
    if (n < min || n > max) return 0;
    for (const unsigned char *p = (const unsigned char *)text; *p; ++p)
        if (*p < 0x20 || *p > 0x7e) return 0;
    return 1;
}

/* A host name or dotted address: letters, digits, '.', '-', 1 to max bytes. */
static inline int settings_host(const char *text, size_t max) {
    if (!text || !*text || strlen(text) > max) return 0;
    for (const char *p = text; *p; ++p)
        if (!isalnum((unsigned char)*p) && *p != '.' && *p != '-') return 0;
    return 1;
}

static inline int settings_ipv4(const char *text) {
    struct in_addr a;
    return text && strlen(text) <= 15 && inet_pton(AF_INET, text, &a) == 1;
}

static inline int settings_hex(const char *text) {
    for (const char *p = text; *p; ++p)
        if (!isxdigit((unsigned char)*p)) return 0;
    return 1;
}

/* The request handed to a library form: copies of checked variables only. */
typedef struct settings_form {
    form_pair pairs[SETTINGS_MAX_PAIRS];
    int count;
} settings_form;

static inline void settings_add(settings_form *f, const char *name, const char *value) {
    if (f->count >= SETTINGS_MAX_PAIRS || !name || !value) return;
    char *n = strdup(name), *v = strdup(value);
    if (!n || !v) {
        free(n);
        free(v);
        return;
    }
    f->pairs[f->count].name = n;
    f->pairs[f->count].value = v;
    f->count++;
}

static inline void settings_free(settings_form *f) {
    cgi_free_form(f->pairs, f->count);
    f->count = 0;
}

#endif
