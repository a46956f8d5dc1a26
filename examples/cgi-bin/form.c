/*
 * form.cgi: applies one submitted form to a rule list, for a logged-in browser. POST only;
 * the session token must be in the query string ("form.cgi?stork=...") as well as in the
 * cookie. Body: "list" (portforward, ipportfilter, macfilter, urlfilter, qos, ipgroup,
 * timegroup), "action" (add, modify, delete, deleteall, switch) and the list's own form
 * variables. Answers {"result":N} with the library's result: 0 done, 10 a rule with this
 * name (or the same content) exists, other values the configuration store's own codes.
 */
#include "cgi_common.h"

#include <stdio.h>
#include <string.h>

/* The element forms' operation codes. */
enum { OP_ADD = 0, OP_MODIFY = 1, OP_DELETE = -1, OP_DELETE_ALL = -2, OP_SWITCH = 100 };

typedef int (*form_fn)(int op, form_pair *pairs, int count);

static int op_of(const char *action) {
    static const struct {
        const char *name;
        int op;
    } kActions[] = {{"add", OP_ADD},
                    {"modify", OP_MODIFY},
                    {"delete", OP_DELETE},
                    {"deleteall", OP_DELETE_ALL},
                    {"switch", OP_SWITCH}};
    for (size_t i = 0; action && i < sizeof kActions / sizeof kActions[0]; ++i)
        if (strcmp(kActions[i].name, action) == 0) return kActions[i].op;
    return -100;
}

/* The rule lists join this table as their forms land: each entry fetches the list from
 * the store, calls save_<list>_config (OP_SWITCH) or save_<list>_config_element, keeps the
 * list on flash and returns the form's result. */
static const struct {
    const char *name;
    form_fn apply;
} kForms[] = {{NULL, NULL}};

static int apply_form(form_pair *pairs, int count) {
    const char *list = cgi_form_value(pairs, count, "list");
    int op = op_of(cgi_form_value(pairs, count, "action"));
    if (op == -100) {
        cgi_reply_error(400, "action must be add, modify, delete, deleteall or switch");
        return 0;
    }
    for (size_t i = 0; list && kForms[i].name; ++i) {
        if (strcmp(kForms[i].name, list) != 0) continue;
        int result = kForms[i].apply(op, pairs, count);
        cgi_begin_json(200, NULL);
        printf("{\"result\":%d}\n", result);
        return 0;
    }
    cgi_reply_error(404, "no such list in this build");
    return 0;
}

int main(void) {
    if (cgi_require_post() != 0 || cgi_require_session(1) != 0) return 0;
    form_pair pairs[CGI_MAX_PAIRS];
    int count = cgi_read_form(pairs, CGI_MAX_PAIRS);
    if (count < 0) return 1;
    int status = 0;
    if (cgi_require_plain_values(pairs, count) == 0) status = apply_form(pairs, count);
    cgi_free_form(pairs, count);
    return status;
}
