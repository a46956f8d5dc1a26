/*
 * form.cgi: applies one submitted form to a rule list, for a logged-in browser. POST only;
 * the session token must be in the query string ("form.cgi?stork=...") as well as in the
 * cookie. Body: "list" (portforward, ipportfilter, macfilter, urlfilter, qos, ipgroup,
 * timegroup), "action" (add, modify, delete, deleteall, switch), "id" for modify and
 * delete, and the list's own form variables. Answers {"result":N} with the library's
 * result: 0 done, 10 a rule with this name (or the same content) exists, other values the
 * configuration store's own codes (CONFIG_ERR_FULL, CONFIG_ERR_NO_ID, CONFIG_ERR_IO).
 */
#include "cgi_common.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The element forms' operations: 0 adds, -1 deletes the rule named by "id", -2 deletes
 * them all, any other value modifies the rule whose id the form carries. */
enum { OP_ADD = 0, OP_DELETE = -1, OP_DELETE_ALL = -2 };

typedef enum { ACTION_ADD, ACTION_MODIFY, ACTION_DELETE, ACTION_DELETE_ALL, ACTION_SWITCH } action;

typedef struct request {
    form_pair *pairs;
    int count;
    action what;
    int op;                  /* the element form's operation */
    rule_config_set *config; /* every rule list and the system record */
} request;

/* The library's switch form of a list, then the list written to flash as well: the form
 * saves only the memory copy, which a restart of the device forgets. */
#define SWITCH_FORM(form, record, flash_saver)                                                     \
    do {                                                                                           \
        int result_ = form(record, r->pairs, r->count);                                            \
        if (result_ == 0 && flash_saver(record) != CONFIG_OK) result_ = CONFIG_ERR_IO;             \
        return result_;                                                                            \
    } while (0)

/* The element forms keep both copies themselves: the store's list calls write the memory
 * copy and the flash copy. */
static int apply_portforward(const request *r) {
    vsipport_config *list = r->config->vsipport;
    if (r->what == ACTION_SWITCH)
        SWITCH_FORM(save_vsipport_config, list, SC_Save_System_VsIpport_Config2Flash);
    return save_vsipport_config_element(list, r->op, r->pairs, r->count, r->config);
}

static int apply_ipportfilter(const request *r) {
    fwipport_config *list = r->config->fwipport;
    if (r->what == ACTION_SWITCH)
        SWITCH_FORM(save_fwipport_config, list, SC_Save_System_FwIpport_Config2Flash);
    return save_fwipport_config_element(list, r->op, r->pairs, r->count, r->config);
}

static int apply_macfilter(const request *r) {
    fwmac_config *list = r->config->fwmac;
    if (r->what == ACTION_SWITCH)
        SWITCH_FORM(save_fwmac_config, list, SC_Save_System_FwMac_Config2Flash);
    return save_fwmac_config_element(list, r->op, r->pairs, r->count, r->config);
}

static int apply_urlfilter(const request *r) {
    fwurl_config *list = r->config->fwurl;
    if (r->what == ACTION_SWITCH)
        SWITCH_FORM(save_fwurl_config, list, SC_Save_System_FwUrl_Config2Flash);
    return save_fwurl_config_element(list, r->op, r->pairs, r->count, r->config);
}

static int apply_qos(const request *r) {
    qos_config *list = r->config->qos;
    if (r->what == ACTION_SWITCH)
        SWITCH_FORM(save_qos_config, list, SC_Save_System_Qos_Config2Flash);
    return save_qos_config_element(list, r->op, r->pairs, r->count, r->config);
}

/* The group lists have no switch; deleting a group also clears the rules that use it. */
static int apply_ipgroup(const request *r) {
    return save_ipgroup_config_element(r->config, r->op, r->pairs, r->count);
}

static int apply_timegroup(const request *r) {
    return save_timegroup_config_element(r->config, r->op, r->pairs, r->count);
}

static const struct {
    const char *name;
    int (*apply)(const request *);
    int has_switch;
} kLists[] = {
    {"portforward", apply_portforward, 1},
    {"ipportfilter", apply_ipportfilter, 1},
    {"macfilter", apply_macfilter, 1},
    {"urlfilter", apply_urlfilter, 1},
    {"qos", apply_qos, 1},
    {"ipgroup", apply_ipgroup, 0},
    {"timegroup", apply_timegroup, 0},
};

static int action_of(const char *text, action *out) {
    static const struct {
        const char *name;
        action what;
    } kActions[] = {{"add", ACTION_ADD},
                    {"modify", ACTION_MODIFY},
                    {"delete", ACTION_DELETE},
                    {"deleteall", ACTION_DELETE_ALL},
                    {"switch", ACTION_SWITCH}};
    for (size_t i = 0; text && i < sizeof kActions / sizeof kActions[0]; ++i)
        if (strcmp(kActions[i].name, text) == 0) {
            *out = kActions[i].what;
            return 0;
        }
    return -1;
}

/* A rule id: 1 to 9999 (the store reads at most four digits of a delete's key). */
static int rule_id(const char *text) {
    if (!text || !*text || strlen(text) > 4 || strspn(text, "0123456789") != strlen(text)) return 0;
    return atoi(text);
}

/* The element form's operation for the action, or -100 (after answering) when the request
 * is incomplete. A modify passes the rule's id as its operation: never 0, -1 or -2. */
static int op_of(action what, const form_pair *pairs, int count) {
    switch (what) {
    case ACTION_ADD:
        return OP_ADD;
    case ACTION_DELETE_ALL:
        return OP_DELETE_ALL;
    case ACTION_SWITCH:
        return OP_ADD; /* unused */
    case ACTION_MODIFY:
    case ACTION_DELETE: {
        int id = rule_id(cgi_form_value(pairs, count, "id"));
        if (id <= 0) {
            cgi_reply_error(400, "id must name a rule (1 to 9999)");
            return -100;
        }
        return what == ACTION_DELETE ? OP_DELETE : id;
    }
    }
    return -100;
}

static int apply_form(form_pair *pairs, int count) {
    const char *list = cgi_form_value(pairs, count, "list");
    action what;
    if (action_of(cgi_form_value(pairs, count, "action"), &what) != 0) {
        cgi_reply_error(400, "action must be add, modify, delete, deleteall or switch");
        return 0;
    }
    for (size_t i = 0; list && i < sizeof kLists / sizeof kLists[0]; ++i) {
        if (strcmp(kLists[i].name, list) != 0) continue;
        if (what == ACTION_SWITCH && !kLists[i].has_switch) {
            cgi_reply_error(400, "this list has no switch");
            return 0;
        }
        int op = op_of(what, pairs, count);
        if (op == -100) return 0;
        rule_config_set config = {.misc = SC_Get_Misc_System_Config(),
                                  .vsipport = SC_Get_VsIpport_System_Config(),
                                  .fwipport = SC_Get_FwIpport_System_Config(),
                                  .ipgroup = SC_Get_IpGroup_System_Config(),
                                  .timegroup = SC_Get_TimeGroup_System_Config(),
                                  .fwurl = SC_Get_FwUrl_System_Config(),
                                  .fwmac = SC_Get_FwMac_System_Config(),
                                  .qos = SC_Get_Qos_System_Config()};
        request r = {pairs, count, what, op, &config};
        int result = kLists[i].apply(&r);
        cgi_begin_json(200, NULL);
        printf("{\"result\":%d}\n", result);
        return 0;
    }
    cgi_reply_error(404, "no such list");
    return 0;
}

int main(void) {
    if (cgi_require_post() != 0 || cgi_require_session(1) != 0) return 0;
    form_pair pairs[CGI_MAX_PAIRS];
    int count = cgi_read_form(pairs, CGI_MAX_PAIRS);
    if (cgi_require_plain_values(pairs, count) == 0) apply_form(pairs, count);
    cgi_free_form(pairs, count);
    return 0;
}
