/*
 * system.cgi: the system settings of the console, for a logged-in browser.
 *
 * GET: the settings the pages edit, as one JSON object of sections ("user", "actimer",
 * "dmz", "nat", "kvr", "ddns", "log", "ntp", "remote", "timereboot", "product"), every
 * value a string. No password is ever printed: the accounts show the names only, the DDNS
 * section whether a password is stored.
 *
 * POST system.cgi?stork=<token>, "form" naming the section and its variables: each value is
 * checked first; a value that would break the device is refused with 400
 * {"error":"...","field":"<variable>"} and nothing is stored. Otherwise the library's form
 * is called with the checked variables and the answer is {"result":0}.
 *
 * The account form needs the current administrator password ("oldpwd"). A new password
 * ("rootpwd", repeated in "rootpwd2") is replaced by its SHA-256 digest, made by the
 * library's hashing, before the form sees it, so the store never holds it in clear; the
 * login accepts the digest. After a password change every other session ends.
 */
#define _POSIX_C_SOURCE 200809L /* strdup, strnlen */

#include "settings_check.h"

#include <fcntl.h>
#include <strings.h>
#include <unistd.h>

typedef struct request {
    const form_pair *pairs;
    int count;
    settings_form out; /* the checked variables the library's form receives */
    int password_changed;
} request;

static const char *value(const request *r, const char *name) {
    return cgi_form_value(r->pairs, r->count, name);
}

/* Each want_* checks one variable when it is sent and forwards it; -1 after a refusal. */
static int want_switch(request *r, const char *name) {
    const char *v = value(r, name);
    if (!v) return 0;
    if (!settings_switch(v)) {
        settings_refuse(name, "Choose on or off.");
        return -1;
    }
    settings_add(&r->out, name, v);
    return 0;
}

static int want_number(request *r, const char *name, long min, long max, const char *message) {
    const char *v = value(r, name);
    if (!v) return 0;
    if (!settings_number(v, min, max, NULL)) {
        settings_refuse(name, message);
        return -1;
    }
    settings_add(&r->out, name, v);
    return 0;
}

static int want_text(request *r, const char *name, size_t min, size_t max, const char *message) {
    const char *v = value(r, name);
    if (!v) return 0;
    if (!settings_printable(v, min, max)) {
        settings_refuse(name, message);
        return -1;
    }
    settings_add(&r->out, name, v);
    return 0;
}

/* A host name or address; empty is allowed unless `required` names the switch that needs
 * it and that switch is on. */
static int want_host(request *r, const char *name, size_t max, const char *required) {
    const char *v = value(r, name);
    const char *on = required ? value(r, required) : NULL;
    if (!v) return 0;
    if ((*v || (on && strcmp(on, "1") == 0)) && !settings_host(v, max)) {
        char message[120];
        snprintf(message, sizeof message,
                 "Give a host name or address (letters, digits, '.' and '-', at most %zu).", max);
        settings_refuse(name, message);
        return -1;
    }
    settings_add(&r->out, name, v);
    return 0;
}

/* --- The administrator account ----------------------------------------------------------- */

static int same_text(const char *a, const char *b) {
    size_t la = strlen(a), lb = strlen(b);
    unsigned diff = (unsigned)(la ^ lb);
    for (size_t i = 0; i < la && i < lb; ++i)
        diff |= (unsigned)(a[i] ^ b[i]);
    return diff == 0;
}

static void member_text(char *out, const char *member, size_t size) {
    size_t n = strnlen(member, size);
    memcpy(out, member, n);
    out[n] = '\0';
}

/* The stored administrator password is clear text (factory setting) or a SHA-256 digest. */
static int is_current_password(const char *given) {
    const misc_config *misc = SC_Get_Misc_System_Config();
    if (!misc || !given) return 0;
    char stored[sizeof misc->sys_user.rootpwd + 1];
    member_text(stored, misc->sys_user.rootpwd, sizeof misc->sys_user.rootpwd);
    if (strlen(stored) == 64 && settings_hex(stored)) {
        char digest[65] = "";
        to_sha256(given, digest, sizeof digest);
        return strlen(digest) == 64 && strncasecmp(digest, stored, 64) == 0;
    }
    return same_text(given, stored);
}

/* A password of 8 to 63 printable characters, forwarded as its digest. */
static int want_password(request *r, const char *name) {
    const char *v = value(r, name);
    if (!v || !*v) return 0; /* empty: unchanged */
    if (!settings_printable(v, 8, 63)) {
        settings_refuse(name, "A password has 8 to 63 characters (letters, digits, signs).");
        return -1;
    }
    char digest[65] = "";
    to_sha256(v, digest, sizeof digest);
    if (strlen(digest) != 64 || !settings_hex(digest)) {
        settings_refuse(name, "The password could not be hashed; nothing was changed.");
        return -1;
    }
    settings_add(&r->out, name, digest);
    return 0;
}

static int account_name(const char *v, int required) {
    if (!v) return 1;
    if (!*v) return !required;
    if (strlen(v) > 63) return 0;
    for (const char *p = v; *p; ++p)
        if (!isalnum((unsigned char)*p) && !strchr("._-", *p)) return 0;
    return 1;
}

static int check_user(request *r) {
    if (!is_current_password(value(r, "oldpwd"))) {
        settings_refuse("oldpwd", "The current password is wrong.");
        return -1;
    }
    const char *rootname = value(r, "rootname");
    if (!account_name(rootname, 1)) {
        settings_refuse("rootname", "A user name has 1 to 63 letters, digits, '.', '_' or '-'.");
        return -1;
    }
    if (rootname) settings_add(&r->out, "rootname", rootname);
    const char *pwd = value(r, "rootpwd"), *again = value(r, "rootpwd2");
    if (pwd && *pwd && (!again || strcmp(pwd, again) != 0)) {
        settings_refuse("rootpwd2", "The two new passwords differ.");
        return -1;
    }
    int before = r->out.count;
    if (want_password(r, "rootpwd") != 0) return -1;
    r->password_changed = r->out.count > before;
    const char *username = value(r, "username");
    if (!account_name(username, 0)) {
        settings_refuse("username", "A user name has up to 63 letters, digits, '.', '_' or '-'.");
        return -1;
    }
    if (username) settings_add(&r->out, "username", username);
    return want_password(r, "userpwd");
}

/* Ends every session but this browser's: the session table, under the session lock, keeps
 * only the slot of this client address holding this request's token. */
static void end_other_sessions(void) {
    char lock_path[512], table_path[512], token[64];
    const char *client = getenv("REMOTE_ADDR");
    if (!client || cgi_cookie("stork", token, sizeof token) != 0) token[0] = '\0';
    int fd = open(cgi_device_path("/var/loginlock", lock_path, sizeof lock_path), O_RDWR);
    if (fd < 0) return;
    if (lock_reg(fd, 14, 1, 0, 0, 0) == 0) { /* blocking write lock, whole file */
        token_list list;
        memset(&list, 0, sizeof list);
        cgi_device_path("/var/usertoken", table_path, sizeof table_path);
        initial_tokenlist(table_path, &list);
        for (int i = 0; i < WEBMGMT_TOKEN_SLOTS; ++i) {
            token_record *s = &list.slot[i];
            int mine = client && token[0] && strcmp(s->client_ip, client) == 0 &&
                       strcmp(s->token, token) == 0;
            if (!mine) s->in_use = 0;
        }
        save_token(table_path, &list);
        lock_reg(fd, 13, 2, 0, 0, 0);
    }
    close(fd);
}

static int apply_user(request *r) {
    int result = save_sys_user(r->out.pairs, r->out.count);
    if (r->password_changed) end_other_sessions();
    return result;
}

/* --- The other sections -------------------------------------------------------------------- */

static int check_actimer(request *r) {
    const char *m = "A time of 1 to 255 seconds.";
    if (want_number(r, "sys_ac_discovery_timeout", 1, 255, m) != 0) return -1;
    return want_number(r, "sys_ac_echo_interval", 1, 255, m);
}
static int apply_actimer(request *r) {
    return save_sys_actimer(r->out.pairs, r->out.count);
}

static int check_dmz(request *r) {
    if (want_switch(r, "dmz_enable") != 0) return -1;
    const char *host = value(r, "dmz_host"), *on = value(r, "dmz_enable");
    if (!host) return 0;
    if ((*host || (on && strcmp(on, "1") == 0)) && !settings_ipv4(host)) {
        settings_refuse("dmz_host", "Give the DMZ host's IPv4 address, such as 192.168.1.20.");
        return -1;
    }
    settings_add(&r->out, "dmz_host", host);
    return 0;
}
static int apply_dmz(request *r) {
    return save_sys_dzm(SC_Get_Misc_System_Config(), r->out.pairs, r->out.count);
}

static int check_nat(request *r) {
    return want_switch(r, "enable");
}
static int apply_nat(request *r) {
    return save_sys_nat(SC_Get_Misc_System_Config(), r->out.pairs, r->out.count);
}

static int check_kvr(request *r) {
    const char *m = "A signal threshold lies between -100 and -40 dBm.";
    if (want_switch(r, "m_kvr_enable") != 0 || want_switch(r, "m_is_5g_first") != 0) return -1;
    if (want_number(r, "m_kvr_2g_rssi_thr", -100, -40, m) != 0) return -1;
    return want_number(r, "m_kvr_5g_rssi_thr", -100, -40, m);
}
static int apply_kvr(request *r) {
    return save_sys_kvr(SC_Get_SC_WiFi_Config(), r->out.pairs, r->out.count);
}

static int check_ddns(request *r) {
    if (want_switch(r, "enable") != 0) return -1;
    if (want_number(r, "usertype", 0, 3, "Choose a provider.") != 0) return -1;
    if (want_text(r, "user", 0, 99, "At most 99 characters.") != 0) return -1;
    const char *pwd = value(r, "pwd");
    /* The DDNS client needs the password itself; empty keeps the stored one. */
    if (pwd && *pwd && want_text(r, "pwd", 1, 99, "At most 99 characters.") != 0) return -1;
    return want_host(r, "domain", 127, "enable");
}
static int apply_ddns(request *r) {
    return save_sys_ddns(SC_Get_Misc_System_Config(), r->out.pairs, r->out.count);
}

static int check_log(request *r) {
    if (want_switch(r, "log_enable") != 0 || want_switch(r, "remote_log_enable") != 0) return -1;
    return want_host(r, "remote_log_server_host", 49, "remote_log_enable");
}
static int apply_log(request *r) {
    return save_sys_log(r->out.pairs, r->out.count);
}

static int check_ntp(request *r) {
    if (want_switch(r, "enable") != 0 || want_switch(r, "ntp_server_mode") != 0) return -1;
    const char *tz = value(r, "ntp_tz");
    if (tz && (!settings_printable(tz, 1, 19) || strchr(tz, ' '))) {
        settings_refuse("ntp_tz", "Choose a time zone.");
        return -1;
    }
    if (tz) settings_add(&r->out, "ntp_tz", tz);
    return want_host(r, "ntp_server_addr", 127, "enable");
}
static int apply_ntp(request *r) {
    return save_sys_ntp(SC_Get_Misc_System_Config(), r->out.pairs, r->out.count);
}

static int check_remote(request *r) {
    if (want_switch(r, "enable_web") != 0 || want_switch(r, "enable_telnet") != 0 ||
        want_switch(r, "local_enable_telnet") != 0)
        return -1;
    return want_number(r, "remote_port", 1, 65535, "A port from 1 to 65535.");
}
/* The device's host text is its serial number, letters and digits only. */
static int apply_remote(request *r) {
    char host[64] = "router";
    const productinfo_config *p = SC_Get_ProductInfo_System_Config();
    if (p) {
        size_t n = 0;
        for (size_t i = 0; i < sizeof p->device_sn && p->device_sn[i] && n + 1 < sizeof host; ++i)
            if (isalnum((unsigned char)p->device_sn[i])) host[n++] = p->device_sn[i];
        if (n) host[n] = '\0';
    }
    return save_sys_remote(r->out.pairs, r->out.count, host);
}

static int check_timereboot(request *r) {
    if (want_switch(r, "m_TimeRebootEnable") != 0) return -1;
    if (want_number(r, "m_TimeRebootType", 0, 2, "Choose daily, weekly or monthly.") != 0 ||
        want_number(r, "m_TimeReboot_Hour", 0, 23, "The hour is 0 to 23.") != 0 ||
        want_number(r, "m_TimeReboot_Week", 0, 6, "Choose a weekday.") != 0 ||
        want_number(r, "m_TimeReboot_Day", 1, 31, "The day of the month is 1 to 31.") != 0)
        return -1;
    return want_number(r, "m_TimeReboot_Month", 1, 12, "The month is 1 to 12.");
}
static int apply_timereboot(request *r) {
    return save_sys_timereboot(SC_Get_Misc_System_Config(), r->out.pairs, r->out.count);
}

static int check_product(request *r) {
    if (want_text(r, "device_name", 1, 99, "A name of 1 to 99 characters.") != 0 ||
        want_text(r, "device_position", 0, 99, "At most 99 characters.") != 0)
        return -1;
    const char *lang = value(r, "default_language");
    if (lang && strcmp(lang, "en") != 0 && strcmp(lang, "zh") != 0) {
        settings_refuse("default_language", "Choose a language.");
        return -1;
    }
    if (lang) settings_add(&r->out, "default_language", lang);
    return 0;
}
static int apply_product(request *r) {
    return save_product_Info(r->out.pairs, r->out.count);
}

static const struct {
    const char *name;
    int (*check)(request *);
    int (*apply)(request *);
} kForms[] = {
    {"user", check_user, apply_user},
    {"actimer", check_actimer, apply_actimer},
    {"dmz", check_dmz, apply_dmz},
    {"nat", check_nat, apply_nat},
    {"kvr", check_kvr, apply_kvr},
    {"ddns", check_ddns, apply_ddns},
    {"log", check_log, apply_log},
    {"ntp", check_ntp, apply_ntp},
    {"remote", check_remote, apply_remote},
    {"timereboot", check_timereboot, apply_timereboot},
    {"product", check_product, apply_product},
};

static void post_form(form_pair *pairs, int count) {
    const char *name = cgi_form_value(pairs, count, "form");
    for (size_t i = 0; name && i < sizeof kForms / sizeof kForms[0]; ++i) {
        if (strcmp(kForms[i].name, name) != 0) continue;
        static request r;
        r.pairs = pairs;
        r.count = count;
        if (kForms[i].check(&r) == 0) {
            int result = kForms[i].apply(&r);
            cgi_begin_json(200, NULL);
            printf("{\"result\":%d}\n", result);
        }
        settings_free(&r.out);
        return;
    }
    cgi_reply_error(404, "no such settings form");
}

/* --- The view -------------------------------------------------------------------------------- */

static int first_member = 1;

static void key(const char *name) {
    printf("%s\"%s\":", first_member ? "" : ",", name);
    first_member = 0;
}
static void text_member(const char *name, const char *member, size_t size) {
    char buf[1024];
    size_t n = strnlen(member, size < sizeof buf - 1 ? size : sizeof buf - 1);
    memcpy(buf, member, n);
    buf[n] = '\0';
    key(name);
    cgi_print_json_string(buf);
}
#define TEXT(name, member) text_member(name, member, sizeof member)
static void number_member(const char *name, long v) {
    key(name);
    printf("\"%ld\"", v);
}
static void open_section(const char *name) {
    key(name);
    putchar('{');
    first_member = 1;
}
static void close_section(void) {
    putchar('}');
    first_member = 0;
}

static int print_view(const char *unused) {
    (void)unused;
    const misc_config *m = SC_Get_Misc_System_Config();
    const wifi_config *w = SC_Get_SC_WiFi_Config();
    const productinfo_config *p = SC_Get_ProductInfo_System_Config();
    if (!m || !w || !p) {
        cgi_reply_error(500, "the configuration store could not load the settings");
        return 1;
    }
    cgi_begin_json(200, NULL);
    putchar('{');
    open_section("user");
    TEXT("rootname", m->sys_user.rootname);
    TEXT("username", m->sys_user.username);
    close_section();
    open_section("actimer");
    number_member("sys_ac_discovery_timeout", m->sys_actimer.sys_ac_discovery_timeout);
    number_member("sys_ac_echo_interval", m->sys_actimer.sys_ac_echo_interval);
    close_section();
    open_section("dmz");
    number_member("dmz_enable", m->sys_dzm.dmz_enable);
    TEXT("dmz_host", m->sys_dzm.dmz_host);
    close_section();
    open_section("nat");
    number_member("enable", m->sys_nat.enable);
    close_section();
    open_section("kvr");
    number_member("m_kvr_enable", w->kvr_enable);
    number_member("m_is_5g_first", w->is_5g_first);
    number_member("m_kvr_2g_rssi_thr", w->kvr_2g_rssi_thr);
    number_member("m_kvr_5g_rssi_thr", w->kvr_5g_rssi_thr);
    close_section();
    open_section("ddns");
    number_member("enable", m->sys_ddns.enable);
    number_member("usertype", m->sys_ddns.usertype);
    TEXT("user", m->sys_ddns.user);
    number_member("pwd_set", m->sys_ddns.pwd[0] != '\0');
    TEXT("domain", m->sys_ddns.domain);
    close_section();
    open_section("log");
    number_member("log_enable", m->sys_log.log_enable);
    number_member("remote_log_enable", m->sys_log.remote_log_enable);
    TEXT("remote_log_server_host", m->sys_log.remote_log_server_host);
    close_section();
    open_section("ntp");
    number_member("enable", m->sys_ntp.enable);
    TEXT("ntp_tz", m->sys_ntp.ntp_tz);
    number_member("ntp_server_mode", m->sys_ntp.ntp_server_mode);
    TEXT("ntp_server_addr", m->sys_ntp.ntp_server_addr);
    close_section();
    open_section("remote");
    number_member("enable_web", m->sys_remote.enable_web);
    number_member("enable_telnet", m->sys_remote.enable_telnet);
    number_member("local_enable_telnet", m->enable_telnet);
    number_member("remote_port", m->sys_remote.remote_port);
    TEXT("web_url", m->sys_remote.web_url);
    close_section();
    open_section("timereboot");
    number_member("m_TimeRebootEnable", m->sys_timereboot.m_TimeRebootEnable);
    number_member("m_TimeRebootType", m->sys_timereboot.m_TimeRebootType);
    number_member("m_TimeReboot_Hour", m->sys_timereboot.m_TimeReboot_Hour);
    number_member("m_TimeReboot_Week", m->sys_timereboot.m_TimeReboot_Week);
    number_member("m_TimeReboot_Day", m->sys_timereboot.m_TimeReboot_Day);
    number_member("m_TimeReboot_Month", m->sys_timereboot.m_TimeReboot_Month);
    close_section();
    open_section("product");
    TEXT("productname", p->productname);
    TEXT("device_sn", p->device_sn);
    TEXT("device_cpu", p->device_cpu);
    TEXT("device_name", p->device_name);
    TEXT("device_position", p->device_position);
    TEXT("default_language", p->default_language);
    close_section();
    printf("}\n");
    return 0;
}

int main(void) {
    return cgi_serve(print_view, NULL, post_form, SETTINGS_MAX_PAIRS);
}
