/*
 * wireless.cgi: the device's own wireless settings, for a logged-in browser.
 *
 * GET: the radios the device has (m_radio_type 1: 2.4 GHz, 2: 5 GHz) with their four
 * virtual access points, the repeater and the timed switch-off, as JSON with every value a
 * string. Keys are part of it: only the logged-in administrator gets this answer.
 *
 * POST wireless.cgi?stork=<token> with "form":
 *   radio     "radio" (0 to 2) and the radio's variables named as the all-radio form names
 *             them ("m_channel<r>", "m_ssid<r><v>", ...): mode, bandwidth, channel, power,
 *             country, and per VAP the switch, SSID, hiding, VLAN and security with the
 *             fields its mode needs;
 *   repeater  "radio" and the repeater's bare names (m_wlan_enable, m_ssid, m_security,
 *             m_psk_keystr, m_wep_keystr, m_bssid);
 *   timeclose m_enable, m_start_time, m_end_time ("HH:MM").
 * A value that would break the device is refused with 400 {"error":...,"field":...} and
 * nothing is stored; otherwise the library's form gets the checked variables and the
 * answer is {"result":0}. The cipher, authentication mode and key types follow from the
 * security mode and the key, so the page does not send them.
 */
#define _POSIX_C_SOURCE 200809L /* strdup, strnlen */

#include "settings_check.h"

/* Security modes of the console: open, WEP, WPA2 personal, WPA2 enterprise (RADIUS). */
enum { SEC_OPEN = 0, SEC_WEP = 1, SEC_WPA2_PSK = 6, SEC_WPA2_EAP = 8 };
enum { CIPHER_NONE = 0, CIPHER_AES = 3 };
enum { BAND_24 = 1, BAND_5 = 2 };

typedef struct request {
    const form_pair *pairs;
    int count;
    settings_form out;
    char name[64]; /* the variable being checked */
} request;

/* The value of `member` with the index suffix `suffix` ("", "1", "12"); the name is kept
 * in r->name for a refusal. */
static const char *value(request *r, const char *member, const char *suffix) {
    snprintf(r->name, sizeof r->name, "%s%s", member, suffix);
    return cgi_form_value(r->pairs, r->count, r->name);
}

static void forward(request *r, const char *v) {
    settings_add(&r->out, r->name, v);
}

/* What a check answers after a refusal (the library's forms answer 0 or -1). */
#define REFUSED (-1000)

static int refuse(request *r, const char *message) {
    settings_refuse(r->name, message);
    return REFUSED;
}

static int want_switch(request *r, const char *member, const char *suffix) {
    const char *v = value(r, member, suffix);
    if (!v) return 0;
    if (!settings_switch(v)) return refuse(r, "Choose on or off.");
    forward(r, v);
    return 0;
}

static int want_number(request *r, const char *member, const char *suffix, long min, long max,
                       const char *message) {
    const char *v = value(r, member, suffix);
    if (!v) return 0;
    if (!settings_number(v, min, max, NULL)) return refuse(r, message);
    forward(r, v);
    return 0;
}

/* --- Channels of each band ------------------------------------------------------------------ */

static int channel_in_band(long channel, int band) {
    if (channel == 0) return 1; /* automatic */
    if (band == BAND_24) return channel >= 1 && channel <= 13;
    static const int k5[] = {36,  40,  44,  48,  52,  56,  60,  64,  100, 104, 108, 112, 116,
                             120, 124, 128, 132, 136, 140, 144, 149, 153, 157, 161, 165};
    for (size_t i = 0; i < sizeof k5 / sizeof k5[0]; ++i)
        if (k5[i] == channel) return 1;
    return 0;
}

static const char *const kCountries[] = {"CN", "US", "EU", "JP"};

/* --- Security -----------------------------------------------------------------------------------
 */

static int psk_ok(const char *key) {
    size_t n = strlen(key);
    if (n == 64) return settings_hex(key);
    return settings_printable(key, 8, 63);
}

static int wep_ok(const char *key) {
    size_t n = strlen(key);
    if (n == 10 || n == 26) return settings_hex(key);
    return (n == 5 || n == 13) && settings_printable(key, n, n);
}

/* The security of one VAP or of the repeater (`suffix` "" then): the mode, its key fields,
 * and the cipher, authentication mode and key types that follow from them. */
static int want_security(request *r, const char *suffix, int enterprise_allowed) {
    const char *mode = value(r, "m_security", suffix);
    if (!mode) return 0;
    long sec = -1;
    settings_number(mode, 0, 255, &sec);
    if (sec != SEC_OPEN && sec != SEC_WEP && sec != SEC_WPA2_PSK &&
        !(enterprise_allowed && sec == SEC_WPA2_EAP))
        return refuse(r, "Choose a security mode.");
    forward(r, mode);
    char text[24];
    snprintf(text, sizeof text, "%ld", sec);
    value(r, "m_authmode", suffix);
    forward(r, text);
    value(r, "m_securitycipher", suffix);
    forward(r, sec == SEC_WPA2_PSK || sec == SEC_WPA2_EAP ? "3" : "0");

    if (sec == SEC_WPA2_PSK) {
        const char *key = value(r, "m_psk_keystr", suffix);
        if (!key || !psk_ok(key))
            return refuse(r, "A WPA key has 8 to 63 characters, or 64 hexadecimal digits.");
        forward(r, key);
        value(r, "m_psk_keytype", suffix);
        forward(r, strlen(key) == 64 ? "1" : "0");
    } else if (sec == SEC_WEP) {
        const char *key = value(r, "m_wep_keystr", suffix);
        if (!key || !wep_ok(key))
            return refuse(r, "A WEP key has 5 or 13 characters, or 10 or 26 hexadecimal digits.");
        forward(r, key);
        value(r, "m_wep_keytype", suffix);
        forward(r, settings_hex(key) && (strlen(key) == 10 || strlen(key) == 26) ? "1" : "0");
    } else if (sec == SEC_WPA2_EAP) {
        const char *ip = value(r, "m_radius_serverip", suffix);
        if (!settings_ipv4(ip)) return refuse(r, "Give the RADIUS server's IPv4 address.");
        forward(r, ip);
        if (want_number(r, "m_radius_serverport", suffix, 1, 65535, "A port from 1 to 65535.") != 0)
            return -1;
        if (!value(r, "m_radius_serverport", suffix)) return refuse(r, "Give the RADIUS port.");
        const char *key = value(r, "m_radius_sharekey", suffix);
        if (!settings_printable(key, 1, 63))
            return refuse(r, "The RADIUS secret has 1 to 63 characters.");
        forward(r, key);
    }
    return 0;
}

/* An SSID of 1 to 32 bytes; empty only while its access point is off. */
static int want_ssid(request *r, const char *suffix) {
    const char *enable = value(r, "m_wlan_enable", suffix);
    const char *ssid = value(r, "m_ssid", suffix);
    if (!ssid) return 0;
    size_t n = strlen(ssid);
    int on = enable && strcmp(enable, "1") == 0;
    if (n > 32 || (n == 0 && on)) return refuse(r, "An SSID has 1 to 32 bytes.");
    forward(r, ssid);
    return 0;
}

/* --- The forms ------------------------------------------------------------------------------- */

static int radio_of(request *r, const wifi_config *w, int *band) {
    long radio = -1;
    const char *v = value(r, "radio", "");
    if (!settings_number(v, 0, WEBMGMT_WIFI_RADIO_COUNT - 1, &radio) ||
        (w->m_radio[radio].m_radio_type != BAND_24 && w->m_radio[radio].m_radio_type != BAND_5)) {
        refuse(r, "The device has no such radio.");
        return -1; /* answered */
    }
    *band = w->m_radio[radio].m_radio_type;
    return (int)radio;
}

static int check_radio(request *r, int radio, int band) {
    char s[24];
    snprintf(s, sizeof s, "%d", radio);
    if (want_switch(r, "m_enable", s) != 0 ||
        want_number(r, "m_wirelessmode", s, 0, 2, "Choose a wireless mode.") != 0 ||
        want_number(r, "m_wlan_txpower", s, 1, 30, "The power is 1 to 30 dBm.") != 0)
        return -1;
    long bw = 0;
    const char *v = value(r, "m_wirelessbwmode", s);
    if (v) {
        if (!settings_number(v, 0, 2, &bw)) return refuse(r, "Choose a bandwidth.");
        if (bw == 2 && band != BAND_5) return refuse(r, "80 MHz needs the 5 GHz band.");
        forward(r, v);
    }
    long channel = 0;
    v = value(r, "m_channel", s);
    if (v) {
        if (!settings_number(v, 0, 255, &channel) || !channel_in_band(channel, band))
            return refuse(r, band == BAND_24 ? "The 2.4 GHz band has channels 1 to 13 (0: auto)."
                                             : "This channel is not in the 5 GHz band.");
        forward(r, v);
    }
    v = value(r, "contrystr", s);
    if (v) {
        int known = 0;
        for (size_t i = 0; i < sizeof kCountries / sizeof kCountries[0]; ++i)
            known |= strcmp(v, kCountries[i]) == 0;
        if (!known) return refuse(r, "Choose a country.");
        forward(r, v);
    }
    for (int vap = 0; vap < WEBMGMT_WIFI_VAP_COUNT; ++vap) {
        char sv[24];
        snprintf(sv, sizeof sv, "%d%d", radio, vap);
        if (want_switch(r, "m_wlan_enable", sv) != 0 || want_ssid(r, sv) != 0 ||
            want_switch(r, "m_wlan_hide_ssid", sv) != 0 ||
            want_number(r, "m_vlanid", sv, 0, 4094, "A VLAN from 1 to 4094 (0: none).") != 0 ||
            want_security(r, sv, 1) != 0)
            return -1;
    }
    return 0;
}

static int post_radio(request *r) {
    wifi_config *w = SC_Get_SC_WiFi_Config();
    int band = 0;
    int radio = w ? radio_of(r, w, &band) : -1;
    if (radio < 0 || check_radio(r, radio, band) != 0) return REFUSED;
    return save_wifi_all_radio_config(w, r->out.pairs, r->out.count);
}

/* "00:11:22:33:44:55" */
static int mac_text_ok(const char *t) {
    if (strlen(t) != 17) return 0;
    for (int i = 0; i < 17; ++i)
        if (i % 3 == 2 ? t[i] != ':' : !isxdigit((unsigned char)t[i])) return 0;
    return 1;
}

static int post_repeater(request *r) {
    wifi_config *w = SC_Get_SC_WiFi_Config();
    int band = 0;
    int radio = w ? radio_of(r, w, &band) : -1;
    if (radio < 0) return REFUSED;
    if (want_switch(r, "m_wlan_enable", "") != 0 || want_ssid(r, "") != 0 ||
        want_security(r, "", 0) != 0)
        return REFUSED;
    const char *bssid = value(r, "m_bssid", "");
    if (bssid && *bssid) {
        if (!mac_text_ok(bssid))
            return refuse(r, "A BSSID is six hexadecimal bytes joined by colons.");
        forward(r, bssid);
        value(r, "m_lockbssid", "");
        forward(r, "1");
    } else if (bssid) {
        value(r, "m_lockbssid", "");
        forward(r, "0");
    }
    return save_wifi_repeater_config(w, r->out.pairs, r->out.count, radio);
}

static int time_of_day(const char *t) {
    return t && strlen(t) == 5 && isdigit((unsigned char)t[0]) && isdigit((unsigned char)t[1]) &&
           t[2] == ':' && isdigit((unsigned char)t[3]) && isdigit((unsigned char)t[4]) &&
           (t[0] - '0') * 10 + (t[1] - '0') < 24 && t[3] < '6';
}

static int post_timeclose(request *r) {
    if (want_switch(r, "m_enable", "") != 0) return REFUSED;
    for (int i = 0; i < 2; ++i) {
        const char *v = value(r, i ? "m_end_time" : "m_start_time", "");
        if (!v) continue;
        if (!time_of_day(v)) return refuse(r, "A time of day as HH:MM, such as 23:30.");
        forward(r, v);
    }
    return save_wifi_timeclose_config(NULL, r->out.pairs, r->out.count);
}

static void post_form(form_pair *pairs, int count) {
    static const struct {
        const char *name;
        int (*post)(request *);
    } kForms[] = {
        {"radio", post_radio}, {"repeater", post_repeater}, {"timeclose", post_timeclose}};
    const char *name = cgi_form_value(pairs, count, "form");
    for (size_t i = 0; name && i < sizeof kForms / sizeof kForms[0]; ++i) {
        if (strcmp(kForms[i].name, name) != 0) continue;
        static request r;
        r.pairs = pairs;
        r.count = count;
        int result = kForms[i].post(&r);
        if (result != REFUSED) {
            cgi_begin_json(200, NULL);
            printf("{\"result\":%d}\n", result);
        }
        settings_free(&r.out);
        return;
    }
    cgi_reply_error(404, "no such wireless form");
}

/* --- The view -------------------------------------------------------------------------------- */

static void text_member(const char *key, const char *member, size_t size, int comma) {
    char buf[128];
    size_t n = strnlen(member, size < sizeof buf - 1 ? size : sizeof buf - 1);
    memcpy(buf, member, n);
    buf[n] = '\0';
    printf("\"%s\":", key);
    cgi_print_json_string(buf);
    if (comma) putchar(',');
}
#define TEXT(key, member) text_member(key, member, sizeof member, 1)

static void number(const char *key, long v) {
    printf("\"%s\":\"%ld\",", key, v);
}

static void print_ipv4(const char *key, uint32_t v4) {
    char text[INET_ADDRSTRLEN] = "";
    struct in_addr a = {v4};
    if (v4 != 0) inet_ntop(AF_INET, &a, text, sizeof text);
    printf("\"%s\":\"%s\",", key, text);
}

static void print_access_point(const wifi_vap *v) {
    putchar('{');
    number("m_wlan_enable", v->m_wlan_enable);
    TEXT("m_ssid", v->m_ssid);
    number("m_wlan_hide_ssid", v->m_wlan_hide_ssid);
    number("m_vlanid", v->m_vlanid);
    number("m_security", v->m_security);
    TEXT("m_psk_keystr", v->m_psk_keystr);
    TEXT("m_wep_keystr", v->m_wep_keystr);
    print_ipv4("m_radius_serverip", v->m_radius_serverip.v4);
    number("m_radius_serverport", v->m_radius_serverport);
    TEXT("m_radius_sharekey", v->m_radius_sharekey);
    printf("\"m_bssid\":\"%02X:%02X:%02X:%02X:%02X:%02X\",", v->m_bssid.mac[0], v->m_bssid.mac[1],
           v->m_bssid.mac[2], v->m_bssid.mac[3], v->m_bssid.mac[4], v->m_bssid.mac[5]);
    number("m_lockbssid", v->m_lockbssid);
    text_member("m_ifname", v->m_ifname, sizeof v->m_ifname, 0);
    putchar('}');
}

static int print_view(const char *unused) {
    (void)unused;
    const wifi_config *w = SC_Get_SC_WiFi_Config();
    if (!w) {
        cgi_reply_error(500, "the configuration store could not load the wireless settings");
        return 1;
    }
    cgi_begin_json(200, NULL);
    printf("{\"radios\":[");
    int first = 1;
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r) {
        const wifi_radio *radio = &w->m_radio[r];
        if (radio->m_radio_type != BAND_24 && radio->m_radio_type != BAND_5) continue;
        printf("%s{", first ? "" : ",");
        first = 0;
        number("radio", r);
        number("m_radio_type", radio->m_radio_type);
        number("m_enable", radio->m_enable);
        number("m_wirelessmode", radio->m_wirelessmode);
        number("m_wirelessbwmode", radio->m_wirelessbwmode);
        number("m_channel", radio->m_channel);
        number("m_wlan_txpower", radio->m_wlan_txpower);
        TEXT("contrystr", radio->contrystr);
        printf("\"vaps\":[");
        for (int v = 0; v < WEBMGMT_WIFI_VAP_COUNT; ++v) {
            if (v) putchar(',');
            print_access_point(&radio->m_vap[v]);
        }
        printf("],\"repeater\":");
        print_access_point(&radio->m_repeater);
        putchar('}');
    }
    printf("],\"m_repeater_radio_id\":\"%d\",\"timeclose\":{", (int)w->m_repeater_radio_id);
    number("m_enable", w->m_timeclosectrl.m_enable);
    TEXT("m_start_time", w->m_timeclosectrl.m_start_time);
    text_member("m_end_time", w->m_timeclosectrl.m_end_time, sizeof w->m_timeclosectrl.m_end_time,
                0);
    printf("}}\n");
    return 0;
}

int main(void) {
    return cgi_serve(print_view, NULL, post_form, SETTINGS_MAX_PAIRS);
}
