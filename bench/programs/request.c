/*
 * The requests that bench/run measures, one per mode:
 *   decode  process_queue_n() of the POST body on standard input, pairs freed
 *   misc    the session check, the body decoded, the misc section printed as JSON
 *   qos     the same with the QoS list
 *   wifi    the wireless section fetched from the store, nothing printed
 *   (as a CGI program named ...-misc.cgi: misc)
 *   prepare stores the misc, QoS and wireless sections (so that the requests read stored
 *           copies)
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "config_data_api.h"
#include "webmgmt.h"

enum { kPairs = 1100 };

static int decode(void) {
    static form_pair pairs[kPairs];
    int n = process_queue_n(pairs, kPairs);
    for (int i = 0; i < n; ++i) {
        free(pairs[i].name);
        free(pairs[i].value);
    }
    return n;
}

static int checked_view(int qos) {
    if (check_token() != 0) {
        fputs("Status: 403 Forbidden\r\n\r\n", stdout);
        return 1;
    }
    int n = decode();
    fputs("Content-Type: application/json\r\n\r\n", stdout);
    if (qos) {
        qos_config *c = SC_Get_Qos_System_Config();
        if (!c) return 1;
        printf_Qos_json(c);
    } else {
        misc_config *m = SC_Get_Misc_System_Config();
        if (!m) return 1;
        printf_Misc_json(m);
    }
    return n < 0;
}

int main(int argc, char **argv) {
    const char *mode = argc > 1 ? argv[1] : "";
    /* Run by a web server (no argument): the mode is in the program's name, "...-misc.cgi". */
    if (argc < 2 && strstr(argv[0], "misc.cgi")) mode = "misc";
    if (strcmp(mode, "decode") == 0) return decode() < 0;
    if (strcmp(mode, "misc") == 0) return checked_view(0);
    if (strcmp(mode, "qos") == 0) return checked_view(1);
    if (strcmp(mode, "wifi") == 0) return SC_Get_SC_WiFi_Config() == NULL;
    if (strcmp(mode, "prepare") == 0) {
        misc_config *m = SC_Get_Misc_System_Config();
        qos_config *q = SC_Get_Qos_System_Config();
        wifi_config *w = SC_Get_SC_WiFi_Config();
        if (!m || !q || !w) return 1;
        return SC_Save_System_Misc_Config(m) != 0 || SC_Save_System_Qos_Config(q) != 0 ||
               SC_Save_SC_WiFi_Config(w) != 0;
    }
    fprintf(stderr, "usage: %s decode|misc|qos|wifi|prepare\n", argv[0]);
    return 2;
}
