/*
 * What the LAN and WAN programs check before they hand a request to the library's forms.
 * The forms store what they are given (an address outside the subnet, a pool that ends
 * before it starts, a lease time of 0); the device then serves nothing or locks the
 * administrator out. So each program lists the variables a page may send for one form,
 * with the kind of value each must be, and passes the form only those variables, once every
 * one of them is well formed. Checks between variables (an address inside a subnet) follow
 * in the programs.
 */
#ifndef WM_FIELD_CHECKS_H
#define WM_FIELD_CHECKS_H

#include <arpa/inet.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "cgi_common.h"

typedef enum {
    FIELD_NUMBER,   /* a whole number from min to max */
    FIELD_HOST,     /* a dotted IPv4 host address */
    FIELD_HOST_OPT, /* the same, or empty or 0.0.0.0 for none */
    FIELD_MASK,     /* a subnet mask: ones, then zeros */
    FIELD_IPV6_OPT, /* an IPv6 address, or empty for none (stored as ::) */
    FIELD_MAC,      /* six two-digit hexadecimal bytes joined by colons */
    FIELD_TEXT,     /* from min to max characters */
} field_kind;

typedef struct field_rule {
    const char *name;
    field_kind kind;
    long min, max;
} field_rule;

#define FLAG_FIELD(name)                                                                           \
    { name, FIELD_NUMBER, 0, 1 }

/* A refusal: the variable it concerns and the sentence the page shows beside it. */
typedef struct field_error {
    const char *field;
    char message[160];
} field_error;

/* The variables of one form that passed their checks, as the library's form takes them. */
typedef struct checked_form {
    form_pair pairs[64];
    int count;
} checked_form;

static inline int field_refuse(field_error *e, const char *field, const char *message) {
    e->field = field;
    snprintf(e->message, sizeof e->message, "%s", message);
    return -1;
}

static inline int parse_ipv4(const char *text, uint32_t *host_order) {
    struct in_addr a;
    if (!text || inet_pton(AF_INET, text, &a) != 1) return -1;
    *host_order = ntohl(a.s_addr);
    return 0;
}

static inline int is_mask(uint32_t m) {
    return m != 0 && ((~m + 1) & ~m) == 0; /* the zeros behind the ones are one run */
}

/* `addr` is a host of the subnet of `base` and `mask`: neither its network nor broadcast. */
static inline int in_subnet(uint32_t addr, uint32_t base, uint32_t mask) {
    return (addr & mask) == (base & mask) && (addr & ~mask) != 0 && (addr & ~mask) != ~mask;
}

static inline int is_mac_text(const char *t) {
    if (strlen(t) != 17) return 0;
    for (int i = 0; i < 17; ++i) {
        int colon = i % 3 == 2;
        if (colon ? t[i] != ':' : !strchr("0123456789abcdefABCDEF", t[i])) return 0;
    }
    return 1;
}

static inline int check_one(const field_rule *r, const char *v, field_error *e) {
    char m[160];
    uint32_t a;
    switch (r->kind) {
    case FIELD_NUMBER:
        if (*v && strlen(v) <= 10 && strspn(v, "0123456789") == strlen(v) && atol(v) >= r->min &&
            atol(v) <= r->max)
            return 0;
        snprintf(m, sizeof m, "Enter a whole number from %ld to %ld.", r->min, r->max);
        return field_refuse(e, r->name, m);
    case FIELD_HOST_OPT: /* "0.0.0.0" is how the views show none */
        if (!*v || strcmp(v, "0.0.0.0") == 0) return 0;
        /* fall through */
    case FIELD_HOST:
        if (parse_ipv4(v, &a) == 0 && a != 0 && a != 0xFFFFFFFFu) return 0;
        return field_refuse(e, r->name, "Enter an IPv4 address such as 192.168.1.1.");
    case FIELD_MASK:
        if (parse_ipv4(v, &a) == 0 && is_mask(a)) return 0;
        return field_refuse(e, r->name, "Enter a subnet mask such as 255.255.255.0.");
    case FIELD_IPV6_OPT: {
        unsigned char six[16];
        if (!*v || inet_pton(AF_INET6, v, six) == 1) return 0;
        return field_refuse(e, r->name, "Enter an IPv6 address such as 2001:db8::1, or nothing.");
    }
    case FIELD_MAC:
        if (is_mac_text(v)) return 0;
        return field_refuse(e, r->name, "Enter a MAC address such as 00:11:22:AA:BB:CC.");
    case FIELD_TEXT: {
        long n = (long)strlen(v);
        if (n >= r->min && n <= r->max) return 0;
        if (n < r->min) return field_refuse(e, r->name, "Enter a value.");
        snprintf(m, sizeof m, "Enter at most %ld characters.", r->max);
        return field_refuse(e, r->name, m);
    }
    }
    return field_refuse(e, r->name, "This value is not accepted.");
}

/* Checks every variable of `rules` that the request carries and copies it into `out`;
 * variables not in `rules` are left out, so a form changes only what its page shows. An
 * empty optional address becomes "none" as the device stores it. 0, or -1 with `e` set. */
static inline int check_fields(const field_rule *rules, size_t n, const form_pair *pairs, int count,
                               checked_form *out, field_error *e) {
    out->count = 0;
    for (size_t i = 0; i < n; ++i) {
        const char *v = cgi_form_value(pairs, count, rules[i].name);
        if (!v) continue;
        if (check_one(&rules[i], v, e) != 0) return -1;
        if (out->count >= (int)(sizeof out->pairs / sizeof out->pairs[0])) break;
        if (!*v && rules[i].kind == FIELD_HOST_OPT) v = "0.0.0.0";
        if (!*v && rules[i].kind == FIELD_IPV6_OPT) v = "::";
        out->pairs[out->count].name = (char *)rules[i].name;
        out->pairs[out->count].value = (char *)v;
        out->count++;
    }
    return 0;
}

/* The address the request sets for `name`, else `stored` (a member's network-order word);
 * in host order. An empty optional address counts as none (0). */
static inline uint32_t sent_or_stored(const checked_form *f, const char *name, uint32_t stored) {
    uint32_t a = 0;
    const char *v = cgi_form_value(f->pairs, f->count, name);
    if (!v) return ntohl(stored);
    return parse_ipv4(v, &a) == 0 ? a : 0;
}

/* `name` must be sent (a modify or an add replaces every member of its element). */
static inline int require_sent(const checked_form *f, const char *name, field_error *e) {
    return cgi_form_value(f->pairs, f->count, name) ? 0 : field_refuse(e, name, "Enter a value.");
}

/* Answers a refusal: 400 {"error":"...","field":"..."}; nothing was stored. */
static inline void reply_refusal(const field_error *e) {
    cgi_begin_json(400, NULL);
    printf("{\"error\":");
    cgi_print_json_string(e->message);
    printf(",\"field\":");
    cgi_print_json_string(e->field);
    printf("}\n");
}

static inline void reply_result(int result) {
    cgi_begin_json(200, NULL);
    printf("{\"result\":%d}\n", result);
}

#endif
