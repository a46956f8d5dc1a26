/*
 * templates.cgi: the forms of the AP-template editor and of a managed AP's settings, for a
 * logged-in browser (fleet.cgi shows what they change).
 *
 * POST templates.cgi?stork=T  form=<name> and the form's variables:
 *   defradio, deftimereboot, defweblogin, defiptv   the default template's radios and VAPs,
 *                                                   reboot schedule, web login, IPTV
 *   template  action=add|modify|delete|deleteall    a template ("m_wlan_group_id" selects it)
 *   bind, unbind    "m_wlan_group_id" and "m_dev_mac": an AP joins or leaves a template
 *   ap              "m_dev_mac" and the AP's name, group, position and reboot schedule
 *   apradio         "m_dev_mac" and the AP's radios and VAPs
 *
 * The variables use the forms' own names ("m_ssid12": radio 1, VAP 2). The library's forms
 * store what they are given, so this program first refuses what would break the device (a
 * malformed MAC, an over-long name, a VLAN id outside 1 to 4094, a reboot hour above 23, an
 * SSID over 32 bytes, a WPA key outside 8 to 63 characters) and passes the form only the
 * variables of its own kind. Answers {"result":N} with the form's result, or 400
 * {"error":"...","field":"..."} (nothing stored).
 */
#include "cgi_common.h"
#include "field_checks.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

/* The groups of variables a form takes. */
enum {
    G_RADIO = 1 << 0,    /* "<member><radio>", radios 0 to 2 */
    G_VAP = 1 << 1,      /* "<member><radio><vap>", VAPs 0 to 3 */
    G_REBOOT = 1 << 2,   /* "m_timereboot.*" */
    G_WEBLOGIN = 1 << 3, /* "m_weblogin.*" */
    G_IPTV = 1 << 4,     /* "m_iptv.*" */
    G_TEMPLATE = 1 << 5, /* a template's identity */
    G_AP_MAC = 1 << 6,   /* "m_dev_mac" */
    G_AP = 1 << 7,       /* the AP's own settings */
    G_BLOCKS = G_REBOOT | G_WEBLOGIN | G_IPTV,
};

/* One kind of variable: its name, or the name before its radio (and VAP) digits. An
 * optional text may also be empty (no key). */
typedef struct var_rule {
    int group;
    const char *name;
    field_kind kind;
    long min, max;
    int optional;
} var_rule;

static const var_rule kRules[] = {
    {G_RADIO, "m_radio_type", FIELD_NUMBER, 0, 2, 0},
    {G_RADIO, "m_wirelessmode", FIELD_NUMBER, 0, 255, 0},
    {G_RADIO, "m_wirelessbwmode", FIELD_NUMBER, 0, 255, 0},
    {G_RADIO, "m_ampduenable", FIELD_NUMBER, 0, 1, 0},
    {G_RADIO, "m_wlan_isolate", FIELD_NUMBER, 0, 1, 0},
    {G_RADIO, "m_wlan_rate", FIELD_NUMBER, 0, 255, 0},
    {G_RADIO, "m_wlan_beacon_interval", FIELD_NUMBER, 20, 1000, 0},
    {G_RADIO, "m_wlan_rts", FIELD_NUMBER, 0, 2347, 0},
    {G_RADIO, "m_wlan_frag", FIELD_NUMBER, 0, 2346, 0},
    {G_RADIO, "m_wlan_shortGI", FIELD_NUMBER, 0, 1, 0},
    {G_RADIO, "m_wlan_txpower", FIELD_NUMBER, 0, 100, 0},
    {G_RADIO, "m_wlan_max_txpower", FIELD_NUMBER, 0, 100, 0},
    {G_RADIO, "m_channel", FIELD_NUMBER, 0, 196, 0},
    {G_RADIO, "m_rev_option", FIELD_NUMBER, 0, 65535, 0},
    {G_RADIO, "m_coverage_threshold", FIELD_NUMBER, 0, 65535, 0},
    {G_RADIO, "m_MaxStanum", FIELD_NUMBER, 0, 255, 0},
    {G_RADIO, "contrystr", FIELD_TEXT, 2, 3, 0},
    {G_VAP, "m_wlan_enable", FIELD_NUMBER, 0, 1, 0},
    {G_VAP, "m_wlan_hide_ssid", FIELD_NUMBER, 0, 1, 0},
    {G_VAP, "m_ssid", FIELD_TEXT, 1, 32, 0},
    {G_VAP, "m_vlanid", FIELD_NUMBER, 1, 4094, 0},
    {G_VAP, "m_security", FIELD_NUMBER, 0, 255, 0},
    {G_VAP, "m_securitycipher", FIELD_NUMBER, 0, 255, 0},
    {G_VAP, "m_authmode", FIELD_NUMBER, 0, 255, 0},
    {G_VAP, "m_wep_keytype", FIELD_NUMBER, 0, 255, 0},
    {G_VAP, "m_wep_keystr", FIELD_TEXT, 5, 26, 1},
    {G_VAP, "m_psk_keytype", FIELD_NUMBER, 0, 255, 0},
    {G_VAP, "m_psk_keystr", FIELD_TEXT, 8, 63, 1},
    {G_VAP, "m_radius_serverip", FIELD_HOST_OPT, 0, 0, 0},
    {G_VAP, "m_radius_serverport", FIELD_NUMBER, 1, 65535, 0},
    {G_VAP, "m_radius_sharekey", FIELD_TEXT, 0, 63, 0},
    {G_REBOOT, "m_timereboot.m_TimeRebootEnable", FIELD_NUMBER, 0, 1, 0},
    {G_REBOOT, "m_timereboot.m_TimeRebootType", FIELD_NUMBER, 0, 255, 0},
    {G_REBOOT, "m_timereboot.m_TimeReboot_Hour", FIELD_NUMBER, 0, 23, 0},
    {G_REBOOT, "m_timereboot.m_TimeReboot_Day", FIELD_NUMBER, 0, 31, 0},
    {G_REBOOT, "m_timereboot.m_TimeReboot_Month", FIELD_NUMBER, 0, 12, 0},
    {G_REBOOT, "m_timereboot.m_TimeReboot_Week", FIELD_NUMBER, 0, 127, 0},
    {G_WEBLOGIN, "m_weblogin.m_enable", FIELD_NUMBER, 0, 1, 0},
    {G_WEBLOGIN, "m_weblogin.m_usertype", FIELD_NUMBER, 0, 255, 0},
    {G_WEBLOGIN, "m_weblogin.m_username", FIELD_TEXT, 1, 31, 0},
    {G_WEBLOGIN, "m_weblogin.m_userpwd", FIELD_TEXT, 1, 31, 0},
    {G_IPTV, "m_iptv.m_enable", FIELD_NUMBER, 0, 1, 0},
    {G_IPTV, "m_iptv.m_vlanid", FIELD_NUMBER, 1, 4094, 0},
    {G_TEMPLATE, "m_wlan_group_id", FIELD_NUMBER, 1, 999999, 0},
    {G_TEMPLATE, "m_wlan_group_name", FIELD_TEXT, 1, 63, 0},
    {G_TEMPLATE, "m_modelname", FIELD_TEXT, 0, 63, 0},
    {G_AP_MAC, "m_dev_mac", FIELD_MAC, 0, 0, 0},
    {G_AP, "m_dev_name", FIELD_TEXT, 1, 63, 0},
    {G_AP, "m_group_name", FIELD_TEXT, 0, 63, 0},
    {G_AP, "m_dev_position", FIELD_TEXT, 0, 63, 0},
    {G_AP, "m_TimeRebootEnable", FIELD_NUMBER, 0, 1, 0},
    {G_AP, "m_RebootTime", FIELD_TEXT, 0, 31, 0},
};

/* The rule of variable `name` among `groups`, or NULL: the whole name, or the name followed
 * by a radio digit (0 to 2) and, for a VAP, a VAP digit (0 to 3). */
static const var_rule *rule_of(const char *name, int groups) {
    for (size_t i = 0; i < sizeof kRules / sizeof kRules[0]; ++i) {
        const var_rule *r = &kRules[i];
        if (!(r->group & groups)) continue;
        size_t n = strlen(r->name);
        if (strncmp(name, r->name, n) != 0) continue;
        const char *rest = name + n;
        int digits = r->group == G_RADIO ? 1 : r->group == G_VAP ? 2 : 0;
        if (strlen(rest) != (size_t)digits) continue;
        if (digits >= 1 && (rest[0] < '0' || rest[0] > '2')) continue;
        if (digits == 2 && (rest[1] < '0' || rest[1] > '3')) continue;
        return r;
    }
    return NULL;
}

/* The variables of the request that belong to `groups`, every one checked; 0, or -1 with
 * `e` set. */
typedef struct form_vars {
    form_pair pairs[256];
    int count;
} form_vars;

static int check_vars(const form_pair *pairs, int count, int groups, form_vars *out,
                      field_error *e) {
    out->count = 0;
    for (int i = 0; i < count; ++i) {
        const var_rule *r = rule_of(pairs[i].name, groups);
        if (!r || out->count >= (int)(sizeof out->pairs / sizeof out->pairs[0])) continue;
        size_t n = strlen(pairs[i].value);
        if (r->kind == FIELD_TEXT && r->min > 1 && n > 0 && n < (size_t)r->min) {
            char m[64];
            snprintf(m, sizeof m, "Enter from %ld to %ld characters.", r->min, r->max);
            return field_refuse(e, pairs[i].name, m);
        }
        if (!(r->optional && n == 0)) {
            field_rule fr = {pairs[i].name, r->kind, r->min, r->max};
            if (check_one(&fr, pairs[i].value, e) != 0) return -1;
        }
        out->pairs[out->count++] = pairs[i];
    }
    return 0;
}

static int sent(const form_vars *v, const char *name, field_error *e) {
    return cgi_form_value(v->pairs, v->count, name) ? 0 : field_refuse(e, name, "Enter a value.");
}

/* The managed-AP list's lock file, held around an AP form's save: the AP daemon writes what
 * the APs report under the same lock, into the list as stored then, and so keeps the save. */
static int lock_ap_list(const manage_ap_list_config *aps) {
    char path[sizeof aps->lock_file + 1] = {0};
    memcpy(path, aps->lock_file, sizeof aps->lock_file);
    int fd = path[0] ? open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0644) : -1;
    if (fd >= 0) sc_lock_reg(fd, 14, 1, 0, SEEK_CUR, 0, 0); /* write lock, waiting */
    return fd;
}

static void unlock(int fd) {
    if (fd >= 0) close(fd); /* closing releases the lock */
}

typedef struct records {
    const form_pair *request; /* every variable sent, for those that are no form's ("action") */
    int count;
    defap_config *def;
    ap_template_list_config *list;
    manage_ap_list_config *aps;
} records;

static int apply_default(const records *r, const char *form, const form_vars *v, field_error *e,
                         int *result) {
    (void)e;
    if (strcmp(form, "defradio") == 0)
        *result = save_defap_radio_config(r->def, v->pairs, v->count);
    else if (strcmp(form, "deftimereboot") == 0)
        *result = save_defap_timereboot_config(r->def, v->pairs, v->count);
    else if (strcmp(form, "defweblogin") == 0)
        *result = save_defap_weblogin_config(r->def, v->pairs, v->count);
    else
        *result = save_defap_iptv_config(r->def, v->pairs, v->count);
    return 0;
}

static int apply_template(const records *r, const char *form, const form_vars *v, field_error *e,
                          int *result) {
    (void)form;
    const char *action = cgi_form_value(r->request, r->count, "action");
    int op;
    if (!action) action = "";
    if (strcmp(action, "add") == 0) {
        if (sent(v, "m_wlan_group_name", e)) return -1;
        op = 0;
    } else if (strcmp(action, "modify") == 0 || strcmp(action, "delete") == 0) {
        if (sent(v, "m_wlan_group_id", e)) return -1;
        op = action[0] == 'm' ? 1 : -1;
    } else if (strcmp(action, "deleteall") == 0) {
        op = -2;
    } else {
        return field_refuse(e, "action", "Choose add, modify, delete or delete all.");
    }
    *result = save_apTemplate_config_element(r->list, op, v->pairs, v->count);
    if (*result == 10)
        return field_refuse(e, "m_wlan_group_name", "Another template has this name.");
    return 0;
}

static int apply_ap(const records *r, const char *form, const form_vars *v, field_error *e,
                    int *result) {
    if (sent(v, "m_dev_mac", e)) return -1;
    int bind = strcmp(form, "bind") == 0, unbind = strcmp(form, "unbind") == 0;
    if ((bind || unbind) && sent(v, "m_wlan_group_id", e)) return -1;
    int fd = lock_ap_list(r->aps);
    if (bind || unbind)
        *result = save_ap_template_bind(r->aps, r->list, bind ? 0 : -1, v->pairs, v->count);
    else if (strcmp(form, "ap") == 0)
        *result = save_ap_config(r->aps, v->pairs, v->count);
    else
        *result = save_ap_radio_config(r->aps, v->pairs, v->count);
    unlock(fd);
    return 0;
}

typedef int (*apply_fn)(const records *, const char *, const form_vars *, field_error *, int *);

static const struct {
    const char *name;
    int groups;
    apply_fn apply;
} kForms[] = {
    {"defradio", G_RADIO | G_VAP, apply_default},
    {"deftimereboot", G_REBOOT, apply_default},
    {"defweblogin", G_WEBLOGIN, apply_default},
    {"defiptv", G_IPTV, apply_default},
    {"template", G_TEMPLATE | G_RADIO | G_VAP | G_BLOCKS, apply_template},
    {"bind", G_TEMPLATE | G_AP_MAC, apply_ap},
    {"unbind", G_TEMPLATE | G_AP_MAC, apply_ap},
    {"ap", G_AP_MAC | G_AP | G_REBOOT, apply_ap},
    {"apradio", G_AP_MAC | G_RADIO | G_VAP, apply_ap},
};

int main(void) {
    if (cgi_require_post() != 0 || cgi_require_same_origin() != 0 || cgi_require_session(1) != 0)
        return 0;
    static form_pair pairs[256];
    int count = cgi_read_form(pairs, 256);
    if (cgi_require_plain_values(pairs, count) != 0) return 0;
    const char *form = cgi_form_value(pairs, count, "form");
    for (size_t i = 0; form && i < sizeof kForms / sizeof kForms[0]; ++i) {
        if (strcmp(kForms[i].name, form) != 0) continue;
        records r = {pairs, count, SC_Get_DefApTemplate_System_Config(),
                     SC_Get_ApTemplateList_System_Config(), SC_Get_ManageApList_System_Config()};
        if (!r.def || !r.list || !r.aps) {
            cgi_reply_error(500, "the configuration store could not load the AP settings");
            return 0;
        }
        static form_vars v;
        field_error e;
        int result = 0;
        if (check_vars(pairs, count, kForms[i].groups, &v, &e) == 0 &&
            kForms[i].apply(&r, form, &v, &e, &result) == 0)
            reply_result(result);
        else
            reply_refusal(&e);
        cgi_free_form(pairs, count);
        return 0;
    }
    cgi_reply_error(404, "no such form: form=defradio|deftimereboot|defweblogin|defiptv|"
                         "template|bind|unbind|ap|apradio");
    return 0;
}
