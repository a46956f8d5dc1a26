/*
 * wan.cgi: the WAN page's views and forms, for a logged-in browser.
 *
 * GET  wan.cgi?stork=T&view=wan     the library's WAN view (the four lines)
 *      wan.cgi?stork=T&view=bypass  the library's bypass view
 *      wan.cgi?stork=T&view=cloud   {"enable":..,"server":..,"bind_code":..,"location_x":..,
 *                                   "location_y":..,"desc":..}
 * POST wan.cgi?stork=T  form=line (with "line" 0 to 3 and "conn_type": 0 static address,
 *      1 DHCP client, 2 PPPoE; only that type's variables are stored), form=bypass or
 *      form=cloud, and the form's variables.
 *
 * Answers {"result":N} with the library's result, or 400 {"error":"...","field":"..."}
 * when a value would break the device (then nothing is stored).
 */
#include "cgi_common.h"
#include "field_checks.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define N_RULES(r) (sizeof(r) / sizeof(r)[0])

enum { CONN_STATIC = 0, CONN_DHCP = 1, CONN_PPPOE = 2 };

/* Every line: its switch and its connection type. */
#define LINE_RULES                                                                                 \
    FLAG_FIELD("enable"), {                                                                        \
        "conn_type", FIELD_NUMBER, 0, 2                                                            \
    }

static const field_rule kStaticRules[] = {
    LINE_RULES,
    {"ipaddr", FIELD_HOST, 0, 0},
    {"subnet", FIELD_MASK, 0, 0},
    {"gateway", FIELD_HOST, 0, 0},
    {"dns1", FIELD_HOST, 0, 0},
    {"dns2", FIELD_HOST_OPT, 0, 0},
    {"fixed_mtu", FIELD_NUMBER, 576, 1500},
};
static const field_rule kDhcpRules[] = {
    LINE_RULES,
    FLAG_FIELD("dnsmode"),
    {"dns1", FIELD_HOST_OPT, 0, 0},
    {"dns2", FIELD_HOST_OPT, 0, 0},
    {"dhcp_mtu", FIELD_NUMBER, 576, 1500},
};
static const field_rule kPppoeRules[] = {
    LINE_RULES,
    {"ppp_username", FIELD_TEXT, 1, 63},
    {"ppp_userpwd", FIELD_TEXT, 1, 63},
    {"ppp_service_name", FIELD_TEXT, 0, 63},
    {"ppp_ac_name", FIELD_TEXT, 0, 63},
};

static const field_rule kBypassRules[] = {
    FLAG_FIELD("enable"),
    FLAG_FIELD("stp"),
    {"conn_type", FIELD_NUMBER, 0, 1},
    {"ipaddr", FIELD_HOST, 0, 0},
    {"subnet", FIELD_MASK, 0, 0},
    {"gateway", FIELD_HOST_OPT, 0, 0},
    {"dns1", FIELD_HOST_OPT, 0, 0},
    {"dns2", FIELD_HOST_OPT, 0, 0},
};

/* The cloud texts are kept in 100- and 50-byte members; one character less keeps them
 * terminated. */
static const field_rule kCloudRules[] = {
    FLAG_FIELD("enable"),
    {"server", FIELD_TEXT, 0, 99},
    {"bind_code", FIELD_TEXT, 0, 99},
    {"location_x", FIELD_TEXT, 0, 49},
    {"location_y", FIELD_TEXT, 0, 49},
    {"desc", FIELD_TEXT, 0, 99},
};

/* The gateway of an address and mask: inside their subnet, not the address itself. */
static int check_gateway(const checked_form *f, uint32_t ip, uint32_t mask, field_error *e) {
    uint32_t gw = sent_or_stored(f, "gateway", 0);
    if (gw == 0) return 0;
    if (!in_subnet(ip, ip, mask))
        return field_refuse(e, "ipaddr",
                            "The address is the subnet's network or broadcast address.");
    if (!in_subnet(gw, ip, mask) || gw == ip)
        return field_refuse(e, "gateway", "The gateway must be another host of this subnet.");
    return 0;
}

static int apply_line(const form_pair *pairs, int count, field_error *e, int *result) {
    const char *line_text = cgi_form_value(pairs, count, "line");
    const char *type_text = cgi_form_value(pairs, count, "conn_type");
    static const field_rule kLine = {"line", FIELD_NUMBER, 0, WEBMGMT_WAN_LINES - 1};
    static const field_rule kType = {"conn_type", FIELD_NUMBER, 0, 2};
    if (check_one(&kLine, line_text ? line_text : "", e) ||
        check_one(&kType, type_text ? type_text : "", e))
        return -1;
    wan_config *wan = SC_Get_Wan_System_Config();
    if (!wan) return field_refuse(e, "line", "The configuration store could not load the WAN.");
    int type = atoi(type_text);
    const field_rule *rules = type == CONN_STATIC ? kStaticRules
                              : type == CONN_DHCP ? kDhcpRules
                                                  : kPppoeRules;
    size_t n = type == CONN_STATIC ? N_RULES(kStaticRules)
               : type == CONN_DHCP ? N_RULES(kDhcpRules)
                                   : N_RULES(kPppoeRules);
    checked_form f;
    if (check_fields(rules, n, pairs, count, &f, e)) return -1;
    if (type == CONN_STATIC) {
        const char *need[] = {"ipaddr", "subnet", "gateway", "dns1"};
        for (size_t i = 0; i < sizeof need / sizeof need[0]; ++i)
            if (require_sent(&f, need[i], e)) return -1;
        if (check_gateway(&f, sent_or_stored(&f, "ipaddr", 0), sent_or_stored(&f, "subnet", 0), e))
            return -1;
    }
    if (type == CONN_PPPOE &&
        (require_sent(&f, "ppp_username", e) || require_sent(&f, "ppp_userpwd", e)))
        return -1;
    *result = save_wan_base(wan, atoi(line_text), f.pairs, f.count);
    return 0;
}

static void apply_form(form_pair *pairs, int count) {
    const char *form = cgi_form_value(pairs, count, "form");
    field_error e;
    checked_form f;
    int result = 0, refused;
    if (form && strcmp(form, "line") == 0) {
        refused = apply_line(pairs, count, &e, &result);
    } else if (form && strcmp(form, "bypass") == 0) {
        refused = check_fields(kBypassRules, N_RULES(kBypassRules), pairs, count, &f, &e);
        misc_config *misc = SC_Get_Misc_System_Config();
        if (!refused && misc) {
            uint32_t ip = sent_or_stored(&f, "ipaddr", misc->sys_bypass.ipaddr.v4);
            uint32_t mask = sent_or_stored(&f, "subnet", misc->sys_bypass.subnet.v4);
            refused = check_gateway(&f, ip, mask, &e);
        }
        if (!refused) result = save_bypass_base(f.pairs, f.count);
    } else if (form && strcmp(form, "cloud") == 0) {
        refused = check_fields(kCloudRules, N_RULES(kCloudRules), pairs, count, &f, &e);
        if (!refused) result = save_cloud_base(SC_Get_Misc_System_Config(), f.pairs, f.count);
    } else {
        cgi_reply_error(404, "no such form");
        return;
    }
    if (refused)
        reply_refusal(&e);
    else
        reply_result(result);
}

/* A text member that may fill its room without a terminator. */
static void print_member(const char *key, const char *member, size_t size, int last) {
    char text[128];
    size_t n = strnlen(member, size);
    if (n >= sizeof text) n = sizeof text - 1;
    memcpy(text, member, n);
    text[n] = '\0';
    printf("\"%s\":", key);
    cgi_print_json_string(text);
    printf(last ? "}\n" : ",");
}

static int print_view(const char *name) {
    if (strcmp(name, "wan") == 0) {
        wan_config *wan = SC_Get_Wan_System_Config();
        if (!wan) return cgi_reply_error(500, "the configuration store could not load the WAN"), 0;
        cgi_begin_json(200, NULL);
        printf_Wan_json(wan);
        return 0;
    }
    misc_config *misc = SC_Get_Misc_System_Config();
    if (!misc) return cgi_reply_error(500, "the configuration store could not load the section"), 0;
    if (strcmp(name, "bypass") == 0) {
        cgi_begin_json(200, NULL);
        printf_Bypass_json(misc);
    } else if (strcmp(name, "cloud") == 0) {
        const misc_cloud *c = &misc->sys_cloud;
        cgi_begin_json(200, NULL);
        printf("{\"enable\":\"%d\",", c->enable);
        print_member("server", c->server, sizeof c->server, 0);
        print_member("bind_code", c->bind_code, sizeof c->bind_code, 0);
        print_member("location_x", c->location_x, sizeof c->location_x, 0);
        print_member("location_y", c->location_y, sizeof c->location_y, 0);
        print_member("desc", c->desc, sizeof c->desc, 1);
    } else {
        cgi_reply_error(404, "no such view");
    }
    return 0;
}

int main(void) {
    return cgi_serve(print_view, "name the view: wan.cgi?view=wan|bypass|cloud", apply_form,
                     CGI_MAX_PAIRS);
}
