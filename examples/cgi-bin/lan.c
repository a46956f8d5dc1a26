/*
 * lan.cgi: the LAN page's views and forms, for a logged-in browser.
 *
 * GET  lan.cgi?stork=T&view=lan       the library's LAN view (addresses, both DHCP servers,
 *                                     the device's static leases, IPv6)
 *      lan.cgi?stork=T&view=acleases  the same view over the controller's static leases
 *      lan.cgi?stork=T&view=vlans     {"ports":["id0","id1","id2","id3"]}
 * POST lan.cgi?stork=T  form=base|vlans|ipv6|devdhcp|acdhcp|lease and the form's variables;
 *      a lease also carries list=dev|ac and action=add|modify|delete|deleteall (and "id").
 *
 * The port VLANs, once stored, are applied to the switch (ConfigLanPortVLAN): that answer
 * adds "applied":0, or -1 when a switch command failed.
 *
 * Answers {"result":N} with the library's result (for leases the store's: 0 done, 3 the
 * list is full, 4 no lease has that id), or 400 {"error":"...","field":"..."} when a value
 * would break the device (then nothing is stored).
 */
#include "cgi_common.h"
#include "field_checks.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define N_RULES(r) (sizeof(r) / sizeof(r)[0])

static const field_rule kBaseRules[] = {
    {"ipaddr", FIELD_HOST, 0, 0},      {"subnet", FIELD_MASK, 0, 0},
    {"gateway", FIELD_HOST_OPT, 0, 0}, {"dns1", FIELD_HOST_OPT, 0, 0},
    {"dns2", FIELD_HOST_OPT, 0, 0},
};

static const field_rule kVlanRules[] = {
    {"m_lan_port_vlan_id0", FIELD_NUMBER, 1, 4094},
    {"m_lan_port_vlan_id1", FIELD_NUMBER, 1, 4094},
    {"m_lan_port_vlan_id2", FIELD_NUMBER, 1, 4094},
    {"m_lan_port_vlan_id3", FIELD_NUMBER, 1, 4094},
};

static const field_rule kIpv6Rules[] = {
    FLAG_FIELD("enable_ipv6"),
    {"ipaddr6", FIELD_IPV6_OPT, 0, 0},
    {"ipaddr6_prefix", FIELD_NUMBER, 1, 128},
    {"ipaddr6_local", FIELD_IPV6_OPT, 0, 0},
    {"ipaddr6_local_prefix", FIELD_NUMBER, 1, 128},
    {"gateway6", FIELD_IPV6_OPT, 0, 0},
    {"gateway6_prefix", FIELD_NUMBER, 1, 128},
    FLAG_FIELD("enable_ipv6_dns"),
    {"dns61", FIELD_IPV6_OPT, 0, 0},
    {"dns62", FIELD_IPV6_OPT, 0, 0},
    FLAG_FIELD("enable_dhcp6"),
    {"dhcp6_ipstart", FIELD_IPV6_OPT, 0, 0},
    {"dhcp6_ipend", FIELD_IPV6_OPT, 0, 0},
    {"dhcp6_lease", FIELD_NUMBER, 60, 31536000},
    FLAG_FIELD("enable_radvd"),
    FLAG_FIELD("ra_flag_M"),
    FLAG_FIELD("ra_flag_O"),
    FLAG_FIELD("ra_flag_A"),
};

/* Both DHCP servers; the controller's form adds its switch, address and mask. */
#define DHCP_RULES                                                                                 \
    FLAG_FIELD("dhcp_server_enable"), {"dhcp_server_start_ipaddr", FIELD_HOST, 0, 0},              \
        {"dhcp_server_end_ipaddr", FIELD_HOST, 0, 0},                                              \
        {"dhcp_server_gateway", FIELD_HOST_OPT, 0, 0}, {"dhcp_server_dns1", FIELD_HOST_OPT, 0, 0}, \
        {"dhcp_server_dns2", FIELD_HOST_OPT, 0, 0}, {                                              \
        "dhcp_server_leasetime", FIELD_NUMBER, 1, 31536000                                         \
    }
static const field_rule kDevDhcpRules[] = {DHCP_RULES};
static const field_rule kAcDhcpRules[] = {DHCP_RULES,
                                          FLAG_FIELD("ac_enable"),
                                          {"acipaddr", FIELD_HOST, 0, 0},
                                          {"acsubnet", FIELD_MASK, 0, 0}};

static const field_rule kLeaseRules[] = {
    {"id", FIELD_NUMBER, 1, 9999},     {"devname", FIELD_TEXT, 0, 63},
    {"devtype", FIELD_NUMBER, 0, 255}, {"mac", FIELD_MAC, 0, 0},
    {"ip", FIELD_HOST, 0, 0},          {"mark", FIELD_TEXT, 0, 63},
};

/* A subnet: its address and mask in host order. */
typedef struct subnet {
    uint32_t base, mask;
} subnet;

static int check_in(uint32_t addr, subnet s, const char *field, const char *what, field_error *e) {
    if (addr == 0 || in_subnet(addr, s.base, s.mask)) return 0;
    char m[160];
    struct in_addr b = {htonl(s.base & s.mask)};
    int prefix = 0;
    for (uint32_t k = s.mask; k; k <<= 1)
        ++prefix;
    snprintf(m, sizeof m, "This address is outside the %s subnet %s/%d.", what, inet_ntoa(b),
             prefix);
    return field_refuse(e, field, m);
}

/* A DHCP pool: start and end in the subnet, the end not below the start, the gateway in
 * the subnet. Only an enabled server's pool is checked against the subnet. */
static int check_pool(const checked_form *f, const lan_dhcpserver *d, subnet s, const char *what,
                      field_error *e) {
    uint32_t start = sent_or_stored(f, "dhcp_server_start_ipaddr", d->dhcp_server_start_ipaddr.v4);
    uint32_t end = sent_or_stored(f, "dhcp_server_end_ipaddr", d->dhcp_server_end_ipaddr.v4);
    uint32_t gw = sent_or_stored(f, "dhcp_server_gateway", d->dhcp_server_gateway.v4);
    const char *on = cgi_form_value(f->pairs, f->count, "dhcp_server_enable");
    int enabled = on ? strcmp(on, "1") == 0 : d->dhcp_server_enable != 0;
    if (end < start)
        return field_refuse(e, "dhcp_server_end_ipaddr",
                            "The pool must end at or after its start.");
    if (!enabled) return 0;
    if (check_in(start, s, "dhcp_server_start_ipaddr", what, e) ||
        check_in(end, s, "dhcp_server_end_ipaddr", what, e) ||
        check_in(gw, s, "dhcp_server_gateway", what, e))
        return -1;
    return 0;
}

static subnet lan_subnet(const checked_form *f, const lan_config *lan) {
    subnet s = {sent_or_stored(f, "ipaddr", lan->ipaddr.v4),
                sent_or_stored(f, "subnet", lan->subnet.v4)};
    return s;
}
static subnet controller_subnet(const checked_form *f, const lan_config *lan) {
    subnet s = {sent_or_stored(f, "acipaddr", lan->acipaddr.v4),
                sent_or_stored(f, "acsubnet", lan->acsubnet.v4)};
    return s;
}

/* Each form's own checks and its library call: 0 with *result set, or -1 with `e` set. The
 * request's own pairs carry what is not a form variable ("list", "action"). */
typedef struct request {
    lan_config *lan;
    const form_pair *pairs;
    int count;
} request;

static int apply_base(const request *r, const checked_form *f, field_error *e, int *result) {
    lan_config *lan = r->lan;
    subnet s = lan_subnet(f, lan);
    if (!in_subnet(s.base, s.base, s.mask))
        return field_refuse(e, "ipaddr",
                            "The address is the subnet's network or broadcast address.");
    if (check_in(sent_or_stored(f, "gateway", lan->gateway.v4), s, "gateway", "LAN", e)) return -1;
    /* The device's DHCP server must keep serving addresses of the LAN. */
    checked_form none = {.count = 0};
    if (lan->dev_dhcpserver.dhcp_server_enable &&
        check_pool(&none, &lan->dev_dhcpserver, s, "new LAN", e) != 0)
        return field_refuse(e, "ipaddr",
                            "The DHCP server's pool would be outside this subnet: move the pool "
                            "or switch the server off first.");
    save_lan_base(lan, f->pairs, f->count);
    *result = 0;
    return 0;
}

/* What the switch said to the port VLANs just saved: 0 applied, -1 a switch command failed. */
static int vlans_applied = 1;

/* The device applies the port VLANs to the switch once they are stored, as it does at boot. */
static int apply_vlans(const request *r, const checked_form *f, field_error *e, int *result) {
    (void)e;
    save_lan_base(r->lan, f->pairs, f->count);
    vlans_applied = ConfigLanPortVLAN(r->lan);
    *result = 0;
    return 0;
}

/* The DHCPv6 pool must not end before it starts. */
static int apply_ipv6(const request *r, const checked_form *f, field_error *e, int *result) {
    const lan_config *lan = r->lan;
    unsigned char start[16], end[16];
    const char *s = cgi_form_value(f->pairs, f->count, "dhcp6_ipstart");
    const char *t = cgi_form_value(f->pairs, f->count, "dhcp6_ipend");
    memcpy(start, lan->dhcp6_ipstart.v6, 16);
    memcpy(end, lan->dhcp6_ipend.v6, 16);
    if (s) inet_pton(AF_INET6, s, start);
    if (t) inet_pton(AF_INET6, t, end);
    if (memcmp(end, start, 16) < 0)
        return field_refuse(e, "dhcp6_ipend", "The pool must end at or after its start.");
    save_lan_base(r->lan, f->pairs, f->count);
    *result = 0;
    return 0;
}

static int apply_devdhcp(const request *r, const checked_form *f, field_error *e, int *result) {
    if (check_pool(f, &r->lan->dev_dhcpserver, lan_subnet(f, r->lan), "LAN", e)) return -1;
    *result = save_lan_dev_dhcpserver(r->lan, f->pairs, f->count);
    return 0;
}

static int apply_acdhcp(const request *r, const checked_form *f, field_error *e, int *result) {
    if (check_pool(f, &r->lan->ac_dhcpserver, controller_subnet(f, r->lan), "controller", e))
        return -1;
    *result = save_lan_ac_dhcpserver(f->pairs, f->count);
    return 0;
}

/* The static leases: "list" names the device's or the controller's, "action" the change. */
static int apply_lease(const request *r, const checked_form *f, field_error *e, int *result) {
    lan_config *lan = r->lan;
    const char *list = cgi_form_value(r->pairs, r->count, "list");
    const char *action = cgi_form_value(r->pairs, r->count, "action");
    int ac = list && strcmp(list, "ac") == 0;
    if (!list || (!ac && strcmp(list, "dev") != 0))
        return field_refuse(e, "list", "Choose the device's or the controller's list.");
    if (!action) action = "";
    int op;
    if (strcmp(action, "deleteall") == 0)
        op = -2;
    else if (strcmp(action, "delete") == 0 || strcmp(action, "modify") == 0) {
        if (require_sent(f, "id", e)) return -1;
        op = action[0] == 'd' ? -1 : atoi(cgi_form_value(f->pairs, f->count, "id"));
    } else if (strcmp(action, "add") == 0)
        op = 0;
    else
        return field_refuse(e, "action", "Choose add, modify, delete or delete all.");
    if (op >= 0) {
        if (require_sent(f, "mac", e) || require_sent(f, "ip", e)) return -1;
        subnet s = ac ? controller_subnet(f, lan) : lan_subnet(f, lan);
        uint32_t ip = sent_or_stored(f, "ip", 0);
        if (check_in(ip, s, "ip", ac ? "controller" : "LAN", e)) return -1;
    }
    *result = ac ? save_lan_dhcp_server_acbindlist(op, f->pairs, f->count)
                 : save_lan_dhcp_server_bindlist(lan, op, f->pairs, f->count);
    return 0;
}

static void apply_form(form_pair *pairs, int count) {
    lan_config *lan = SC_Get_Lan_System_Config();
    if (!lan) {
        cgi_reply_error(500, "the configuration store could not load the LAN section");
        return;
    }
    const char *form = cgi_form_value(pairs, count, "form");
    if (!form) form = "";
    static const struct {
        const char *name;
        const field_rule *rules;
        size_t n;
        int (*apply)(const request *, const checked_form *, field_error *, int *);
    } kForms[] = {
        {"base", kBaseRules, N_RULES(kBaseRules), apply_base},
        {"vlans", kVlanRules, N_RULES(kVlanRules), apply_vlans},
        {"ipv6", kIpv6Rules, N_RULES(kIpv6Rules), apply_ipv6},
        {"devdhcp", kDevDhcpRules, N_RULES(kDevDhcpRules), apply_devdhcp},
        {"acdhcp", kAcDhcpRules, N_RULES(kAcDhcpRules), apply_acdhcp},
        {"lease", kLeaseRules, N_RULES(kLeaseRules), apply_lease},
    };
    for (size_t i = 0; i < N_RULES(kForms); ++i) {
        if (strcmp(kForms[i].name, form) != 0) continue;
        request r = {lan, pairs, count};
        checked_form f;
        field_error e;
        int result = 0;
        if (check_fields(kForms[i].rules, kForms[i].n, pairs, count, &f, &e) == 0 &&
            kForms[i].apply(&r, &f, &e, &result) == 0) {
            if (vlans_applied != 1) {
                cgi_begin_json(200, NULL);
                printf("{\"result\":%d,\"applied\":%d}\n", result, vlans_applied);
            } else {
                reply_result(result);
            }
        } else {
            reply_refusal(&e);
        }
        return;
    }
    cgi_reply_error(404, "no such form");
}

static int print_view(const char *name) {
    lan_config *lan = SC_Get_Lan_System_Config();
    if (!lan) {
        cgi_reply_error(500, "the configuration store could not load the LAN section");
        return 0;
    }
    if (strcmp(name, "lan") == 0) {
        cgi_begin_json(200, NULL);
        printf_Lan_json(lan);
    } else if (strcmp(name, "acleases") == 0) {
        /* The library's view prints the device's list: print it over a copy that holds the
         * controller's list in its place. */
        static lan_config copy;
        copy = *lan;
        copy.dhcp_server_bindlist = lan->dhcp_server_acbindlist;
        cgi_begin_json(200, NULL);
        printf_Lan_json(&copy);
    } else if (strcmp(name, "vlans") == 0) {
        cgi_begin_json(200, NULL);
        printf("{\"ports\":[");
        for (int i = 0; i < WEBMGMT_LAN_PORTS; ++i)
            printf("%s\"%d\"", i ? "," : "", lan->lan_vlan.port[i].m_vlan_id);
        printf("]}\n");
    } else {
        cgi_reply_error(404, "no such view");
    }
    return 0;
}

int main(void) {
    return cgi_serve(print_view, "name the view: lan.cgi?view=lan|acleases|vlans", apply_form,
                     CGI_MAX_PAIRS);
}
