/*
 * fleet.cgi?do=<what>: the controller's view of its fleet, for a logged-in browser. Every
 * answer is composed from the library's views, one call per managed device where a view
 * prints one device:
 *
 *   dashboard                   {"devices":[<summary per device>],"max":N}
 *   list&ip=..&mac=..           {"devices":[<list document per device>],"max":N}
 *   ap&mac=AA:BB:..             {"ap":[<full configuration>]}  (the view closes "]}")
 *   scan&mac=..&radio=R&band=24|58   the survey XML of that radio
 *   templates                   {"default":<default template>,"list":[<row per template>]}
 *   template&index=I            one template's settings
 *   members&index=I&mode=1|2    the candidates (1) or the bound device (2) of template I,
 *                               as the view prints them (not JSON: the page reads that
 *                               shape), one document per device, separated by RS (0x1E)
 *   wlan                        the device's own radios, {"radios":..,"timeclose":..}
 */
#include "cgi_common.h"

#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The managed devices the list section holds now (its count, bounded by its room). */
static int device_count(const manage_ap_list_config *list) {
    int n = list->count;
    if (n < 0) n = 0;
    if (n > WEBMGMT_AP_MAX) n = WEBMGMT_AP_MAX;
    return n;
}

/* `value` made only of the characters in `allowed` (and at most `max` of them). */
static int only(const char *value, const char *allowed, size_t max) {
    if (strlen(value) > max) return 0;
    for (const char *p = value; *p; ++p)
        if (!strchr(allowed, *p)) return 0;
    return 1;
}

/* An optional query variable, "" when absent; -1 after answering 400 when it is longer than
 * `out` holds or holds other characters than `allowed`. */
static int query_checked(const char *name, const char *allowed, char *out, size_t size,
                         const char *refusal) {
    char value[1024]; /* what the query string may hold */
    out[0] = '\0';
    if (cgi_query_value(name, value, sizeof value) != 0) return 0; /* absent */
    if (!only(value, allowed, size - 1)) {
        cgi_reply_error(400, refusal);
        return -1;
    }
    memcpy(out, value, strlen(value) + 1);
    return 0;
}

static const char kHex[] = "0123456789ABCDEFabcdef:";

static manage_ap_list_config *ap_list(void) {
    manage_ap_list_config *list = SC_Get_ManageApList_System_Config();
    if (!list) cgi_reply_error(500, "the configuration store could not load the managed APs");
    return list;
}

/* The index of the device whose MAC the "mac" variable names, or -1 after answering. */
static int device_by_mac(const manage_ap_list_config *list) {
    char text[32];
    unsigned b[6];
    if (query_checked("mac", kHex, text, sizeof text, "mac: give the AP's MAC address") != 0)
        return -1;
    if (sscanf(text, "%2x:%2x:%2x:%2x:%2x:%2x", &b[0], &b[1], &b[2], &b[3], &b[4], &b[5]) != 6) {
        cgi_reply_error(400, "mac: give the AP's MAC address as AA:BB:CC:DD:EE:FF");
        return -1;
    }
    uint8_t mac[6];
    for (int i = 0; i < 6; ++i)
        mac[i] = (uint8_t)b[i];
    int index = SC_Get_Ap_Info_By_Mac(list, mac);
    if (index < 0 || index >= device_count(list)) {
        cgi_reply_error(404, "no managed AP has that MAC address");
        return -1;
    }
    return index;
}

static int show_dashboard(void) {
    manage_ap_list_config *list = ap_list();
    if (!list) return 0;
    cgi_begin_json(200, NULL);
    printf("{\"devices\":[");
    int n = device_count(list);
    if (n == 0) printf_Mian_Info_json(NULL);
    for (int i = 0; i < n; ++i) {
        if (i) putchar(',');
        printf_Mian_Info_json(&list->m_ap[i]);
    }
    printf("],\"max\":%d}", WEBMGMT_AP_MAX);
    return 0;
}

static int show_list(void) {
    char ip[16], mac[18];
    if (query_checked("ip", "0123456789.", ip, sizeof ip,
                      "IP filter: digits and dots only, at most 15") != 0 ||
        query_checked("mac", kHex, mac, sizeof mac,
                      "MAC filter: hexadecimal digits and colons only, at most 17") != 0)
        return 0;
    /* The view compares against the upper-case MAC text; the page may type either case. */
    for (char *p = mac; *p; ++p)
        *p = (char)toupper((unsigned char)*p);
    manage_ap_list_config *list = ap_list();
    if (!list) return 0;
    cgi_begin_json(200, NULL);
    printf("{\"devices\":[");
    int n = device_count(list);
    if (n == 0) printf_ManageApList_json(NULL, 3, ip, mac);
    for (int i = 0; i < n; ++i) {
        if (i) putchar(',');
        printf_ManageApList_json(&list->m_ap[i], 3, ip, mac);
    }
    printf("],\"max\":%d}", WEBMGMT_AP_MAX);
    return 0;
}

static int show_ap(void) {
    manage_ap_list_config *list = ap_list();
    if (!list) return 0;
    int index = device_by_mac(list);
    if (index < 0) return 0;
    const ap_device_record *ap = &list->m_ap[index];
    char mac[18];
    snprintf(mac, sizeof mac, "%02X:%02X:%02X:%02X:%02X:%02X", ap->m_dev_mac.mac[0],
             ap->m_dev_mac.mac[1], ap->m_dev_mac.mac[2], ap->m_dev_mac.mac[3], ap->m_dev_mac.mac[4],
             ap->m_dev_mac.mac[5]);
    cgi_begin_json(200, NULL);
    /* The view prints the device and closes the array and the object ("}]}"). */
    printf("{\"ap\":[");
    printf_Ap_cf_json(ap, mac);
    return 0;
}

static int show_scan(void) {
    char radio[4], band[4];
    if (query_checked("radio", "012", radio, sizeof radio, "radio: 0, 1 or 2") != 0 ||
        query_checked("band", "2458", band, sizeof band, "band: 24 or 58") != 0)
        return 0;
    if (strlen(radio) != 1 || (strcmp(band, "24") != 0 && strcmp(band, "58") != 0)) {
        cgi_reply_error(400, "give radio=0..2 and band=24 or 58");
        return 0;
    }
    manage_ap_list_config *list = ap_list();
    if (!list) return 0;
    int index = device_by_mac(list);
    if (index < 0) return 0;
    ap_runtime_config *runtime = SC_Get_ApRuntime_System_Config();
    if (!runtime) {
        cgi_reply_error(500, "the configuration store could not load the scan results");
        return 0;
    }
    ap_scan_context context = {list, runtime};
    printf("Status: 200 OK\r\nContent-Type: application/xml; charset=utf-8\r\n"
           "Cache-Control: no-store\r\n\r\n");
    if (band[0] == '2')
        printf_ApScan24_json(&context, index, radio[0] - '0');
    else
        printf_ApScan58_json(&context, index, radio[0] - '0');
    return 0;
}

static int template_index(void) {
    char text[4];
    if (query_checked("index", "0123456789", text, sizeof text, "index: a template number") != 0)
        return -1;
    if (!text[0] || atoi(text) >= WEBMGMT_AP_TEMPLATES) {
        cgi_reply_error(400, "index: a template number below the list's size");
        return -1;
    }
    return atoi(text);
}

static int show_templates(void) {
    defap_config *def = SC_Get_DefApTemplate_System_Config();
    ap_template_list_config *list = SC_Get_ApTemplateList_System_Config();
    if (!def || !list) {
        cgi_reply_error(500, "the configuration store could not load the templates");
        return 0;
    }
    cgi_begin_json(200, NULL);
    printf("{\"default\":");
    printf_DefApTemplate_json(def);
    printf(",\"list\":[");
    for (int i = 0; i < WEBMGMT_AP_TEMPLATES; ++i) {
        if (i) putchar(',');
        printf_ApTemplateList_json(&list->m_template[i]);
    }
    printf("]}");
    return 0;
}

static int show_template(void) {
    int index = template_index();
    if (index < 0) return 0;
    ap_template_list_config *list = SC_Get_ApTemplateList_System_Config();
    if (!list) {
        cgi_reply_error(500, "the configuration store could not load the templates");
        return 0;
    }
    cgi_begin_json(200, NULL);
    printf_ApTemplateList_cf_json(list->m_template, index);
    return 0;
}

static int show_members(void) {
    int index = template_index();
    if (index < 0) return 0;
    char mode[2];
    if (query_checked("mode", "12", mode, sizeof mode, "mode: 1 (candidates) or 2 (bound)") != 0)
        return 0;
    if (!mode[0]) {
        cgi_reply_error(400, "mode: 1 (candidates) or 2 (bound)");
        return 0;
    }
    ap_template_list_config *templates = SC_Get_ApTemplateList_System_Config();
    manage_ap_list_config *list = ap_list();
    if (!list) return 0;
    if (!templates) {
        cgi_reply_error(500, "the configuration store could not load the templates");
        return 0;
    }
    printf("Status: 200 OK\r\nContent-Type: text/plain; charset=utf-8\r\n"
           "Cache-Control: no-store\r\n\r\n");
    int n = device_count(list);
    if (n == 0) printf_ApTemplateList_mac_json(NULL, templates->m_template, index, mode[0] - '0');
    for (int i = 0; i < n; ++i) {
        if (i) putchar(0x1E);
        printf_ApTemplateList_mac_json(&list->m_ap[i], templates->m_template, index, mode[0] - '0');
    }
    return 0;
}

static int show_wlan(void) {
    wifi_config *wifi = SC_Get_SC_WiFi_Config();
    productinfo_config *product = SC_Get_ProductInfo_System_Config();
    if (!wifi || !product) {
        cgi_reply_error(500, "the configuration store could not load the wireless settings");
        return 0;
    }
    cgi_begin_json(200, NULL);
    printf("{\"radios\":");
    printf_WiFi_json(wifi, product->dev_spec.support_radio_count);
    printf(",\"timeclose\":");
    printf_WiFi_Timeclosectrl_json(wifi);
    printf("}");
    return 0;
}

static const struct {
    const char *name;
    int (*show)(void);
} kAnswers[] = {
    {"dashboard", show_dashboard}, {"list", show_list},           {"ap", show_ap},
    {"scan", show_scan},           {"templates", show_templates}, {"template", show_template},
    {"members", show_members},     {"wlan", show_wlan},           {NULL, NULL}};

int main(void) {
    /* The session check reads the query string, which decoding would remove. */
    if (cgi_require_session(0) != 0) return 0;
    char what[16];
    if (cgi_query_value("do", what, sizeof what) != 0) {
        cgi_reply_error(400, "say what to show: fleet.cgi?do=...");
        return 0;
    }
    for (size_t i = 0; kAnswers[i].name; ++i)
        if (strcmp(kAnswers[i].name, what) == 0) return kAnswers[i].show();
    cgi_reply_error(404, "no such view");
    return 0;
}
