/*
 * clients.cgi: client accounts, client groups, the blacklist, the stations and their marks,
 * and the wireless access lists, for a logged-in browser.
 *
 * GET clients.cgi?view=NAME prints the library's view: clients, black, groups, stations
 * (the device's own radios), apstations (the managed AP's), acl (the radios' lists; with
 * "ext=1" the global list for every radio), and marks (the station-mark table, printed here).
 *
 * POST clients.cgi?stork=TOKEN with "form" (group, client, mark, unmark, acl, aclext,
 * aclmode), "action" (add, modify, delete, deleteall), "id" for modify and delete, "radio"
 * for acl, and the form's own variables. Answers {"result":N}: 0 done, 2 the mark table is
 * full, 10 an access-list entry with this name exists, others the store's codes. What would
 * break the device (a malformed MAC, an over-long name or mark) is refused before any form
 * is called, with {"error":...,"field":NAME} and status 400, and nothing is stored.
 */
#include "cgi_common.h"

#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { OP_ADD = 0, OP_DELETE = -1, OP_DELETE_ALL = -2 };

/* The longest texts the pages may store: what fits the stored members with a terminator. */
enum {
    GROUP_NAME_MAX = 19,  /* client_group.m_name */
    CLIENT_TEXT_MAX = 20, /* client_account.m_name and its other 21-byte texts */
    CLIENT_MARK_MAX = 99, /* client_account.m_mark */
    ACL_TEXT_MAX = 63,    /* the access lists' names and marks, as the rule pages allow */
    STA_MARK_MAX = 84,    /* sta_mark.mark */
};

static void reply_field_error(const char *field, const char *message) {
    cgi_begin_json(400, NULL);
    fputs("{\"error\":", stdout);
    cgi_print_json_string(message);
    fputs(",\"field\":", stdout);
    cgi_print_json_string(field);
    puts("}");
}

static void reply_result(int result) {
    cgi_begin_json(200, NULL);
    printf("{\"result\":%d}\n", result);
}

/* Six two-digit hexadecimal groups joined by colons. */
static int is_mac(const char *text) {
    if (!text || strlen(text) != 17) return 0;
    for (int i = 0; i < 17; ++i) {
        int ok = i % 3 == 2 ? text[i] == ':' : isxdigit((unsigned char)text[i]);
        if (!ok) return 0;
    }
    return 1;
}

/* A required MAC; answers and returns -1 when it is missing or malformed. */
static int require_mac(const form_pair *pairs, int count, const char *field) {
    if (is_mac(cgi_form_value(pairs, count, field))) return 0;
    reply_field_error(field, "Enter the MAC address as six pairs of hex digits, like "
                             "00:11:22:AA:BB:CC.");
    return -1;
}

/* An optional text of at most `max` characters (`required`: at least one). */
static int require_text(const form_pair *pairs, int count, const char *field, size_t max,
                        int required) {
    const char *v = cgi_form_value(pairs, count, field);
    char message[120];
    if (required && (!v || !*v)) {
        reply_field_error(field, "This field is required.");
        return -1;
    }
    if (v && strlen(v) > max) {
        snprintf(message, sizeof message, "At most %zu characters.", max);
        reply_field_error(field, message);
        return -1;
    }
    return 0;
}

/* A number in [lo, hi], if given. */
static int require_number(const form_pair *pairs, int count, const char *field, long lo, long hi) {
    const char *v = cgi_form_value(pairs, count, field);
    if (!v || !*v) return 0;
    char *end = NULL;
    long n = strtol(v, &end, 10);
    if (*end == '\0' && n >= lo && n <= hi && strlen(v) <= 10) return 0;
    char message[120];
    snprintf(message, sizeof message, "Enter a whole number from %ld to %ld.", lo, hi);
    reply_field_error(field, message);
    return -1;
}

/* The element forms' operation for "action": add 0, delete -1, deleteall -2, modify the
 * element's id (1 to 9999). -100 after answering when the request is incomplete. */
static int op_of(const form_pair *pairs, int count, int has_delete_all) {
    const char *action = cgi_form_value(pairs, count, "action");
    if (!action) action = "";
    if (strcmp(action, "add") == 0) return OP_ADD;
    if (has_delete_all && strcmp(action, "deleteall") == 0) return OP_DELETE_ALL;
    if (strcmp(action, "modify") == 0 || strcmp(action, "delete") == 0) {
        const char *id = cgi_form_value(pairs, count, "id");
        if (!id || !*id || strlen(id) > 4 || strspn(id, "0123456789") != strlen(id) ||
            atoi(id) <= 0) {
            reply_field_error("id", "The request does not name an entry (1 to 9999).");
            return -100;
        }
        return strcmp(action, "delete") == 0 ? OP_DELETE : atoi(id);
    }
    reply_field_error("action", has_delete_all ? "action must be add, modify, delete or deleteall"
                                               : "action must be add, modify or delete");
    return -100;
}

/* ---- forms -------------------------------------------------------------------------------- */

static void form_group(form_pair *pairs, int count) {
    int op = op_of(pairs, count, 1);
    if (op == -100) return;
    if (op >= 0 && require_text(pairs, count, "m_name", GROUP_NAME_MAX, 1) != 0) return;
    if (op > 0 &&
        strcmp(cgi_form_value(pairs, count, "m_id") ? cgi_form_value(pairs, count, "m_id") : "",
               cgi_form_value(pairs, count, "id")) != 0) {
        reply_field_error("m_id", "The group's id and the entry modified differ.");
        return;
    }
    reply_result(save_clients_groups_config(op, pairs, count));
}

static void form_client(form_pair *pairs, int count) {
    static const char *const kTexts[] = {"m_name", "m_pass",    "m_account",
                                         "m_tel",  "m_open_id", "m_card_id"};
    int op = op_of(pairs, count, 1);
    if (op == -100) return;
    if (op == OP_DELETE && cgi_form_value(pairs, count, "m_haddr") &&
        require_mac(pairs, count, "m_haddr") != 0)
        return;
    if (op >= 0) {
        if (require_text(pairs, count, "m_name", CLIENT_TEXT_MAX, 1) != 0) return;
        for (size_t i = 1; i < sizeof kTexts / sizeof kTexts[0]; ++i)
            if (require_text(pairs, count, kTexts[i], i == 4 ? 30 : CLIENT_TEXT_MAX, 0) != 0)
                return;
        if (require_text(pairs, count, "m_mark", CLIENT_MARK_MAX, 0) != 0) return;
        if (require_mac(pairs, count, "m_haddr") != 0) return;
        if (require_number(pairs, count, "m_group_id", 0, 255) != 0 ||
            require_number(pairs, count, "m_is_deny", 0, 1) != 0 ||
            require_number(pairs, count, "m_is_bindmac", 0, 1) != 0)
            return;
    }
    reply_result(save_clients_config(op, pairs, count));
}

/* The entry of the mark table for `mac` (upper case): its own, else the first free one. */
static int mark_index(const clients_config *clients, const char *mac) {
    int free_slot = -1;
    for (int i = 0; i < WEBMGMT_STA_MARKS; ++i) {
        const uint8_t *m = clients->m_sta_mark[i].mac.mac;
        char text[18];
        snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", m[0], m[1], m[2], m[3], m[4],
                 m[5]);
        if (m[0] != 0 && strcmp(text, mac) == 0) return i;
        if (m[0] == 0 && free_slot < 0) free_slot = i;
    }
    return free_slot < 0 ? 0 : free_slot;
}

static void upper_mac(const char *mac, char *out) {
    for (int i = 0; i < 17; ++i)
        out[i] = (char)toupper((unsigned char)mac[i]);
    out[17] = '\0';
}

static void form_mark(form_pair *pairs, int count, int clear) {
    if (require_mac(pairs, count, "mac") != 0) return;
    char mac[18];
    upper_mac(cgi_form_value(pairs, count, "mac"), mac);
    /* The table counts a MAC beginning with 00 as a free entry: such a mark would be lost. */
    if (!clear && strncmp(mac, "00:", 3) == 0) {
        reply_field_error("mac", "A MAC address beginning with 00 cannot be marked.");
        return;
    }
    if (!clear && require_text(pairs, count, "mark", STA_MARK_MAX, 1) != 0) return;
    clients_config *clients = SC_Get_Clients_System_Config();
    if (!clients) {
        cgi_reply_error(500, "the configuration store could not load the section");
        return;
    }
    if (clear) {
        reply_result(del_user_mark(clients, mac));
        return;
    }
    reply_result(save_user_mark(clients, pairs, count, mark_index(clients, mac), mac));
}

static int acl_entry_checks(form_pair *pairs, int count, int op) {
    if (op < 0) return 0;
    if (require_text(pairs, count, "name", ACL_TEXT_MAX, 1) != 0 ||
        require_text(pairs, count, "mark", ACL_TEXT_MAX, 0) != 0 ||
        require_mac(pairs, count, "mac") != 0 || require_number(pairs, count, "status", 0, 1) != 0)
        return -1;
    return 0;
}

static void form_acl(form_pair *pairs, int count) {
    const char *radio = cgi_form_value(pairs, count, "radio");
    if (!radio || strlen(radio) != 1 || radio[0] < '0' || radio[0] > '2') {
        reply_field_error("radio", "radio must be 0, 1 or 2");
        return;
    }
    int op = op_of(pairs, count, 1);
    if (op == -100 || acl_entry_checks(pairs, count, op) != 0) return;
    reply_result(save_wifi_acl_config(op, pairs, count, radio[0] - '0'));
}

static void form_acl_ext(form_pair *pairs, int count) {
    /* The global list has no delete-all: the form would take -2 for a modify. */
    int op = op_of(pairs, count, 0);
    if (op == -100 || acl_entry_checks(pairs, count, op) != 0) return;
    reply_result(save_wifi_acl_config_ext(op, pairs, count));
}

static void form_acl_mode(form_pair *pairs, int count) {
    const char *mode = cgi_form_value(pairs, count, "mode");
    if (!mode || strlen(mode) != 1 || mode[0] < '0' || mode[0] > '2') {
        reply_field_error("mode", "mode must be 0 (off), 1 (allow listed) or 2 (deny listed)");
        return;
    }
    int result = save_wifi_acl_mode_config(mode[0] - '0');
    /* The form saves the memory copy only, which a restart forgets. */
    wifi_config *wifi = SC_Get_SC_WiFi_Config();
    if (result == 0 && (!wifi || SC_Save_SC_WiFi_Config2Flash(wifi) != CONFIG_OK))
        result = CONFIG_ERR_IO;
    reply_result(result);
}

static void apply_form(form_pair *pairs, int count) {
    const char *form = cgi_form_value(pairs, count, "form");
    if (!form) form = "";
    if (strcmp(form, "group") == 0) return form_group(pairs, count);
    if (strcmp(form, "client") == 0) return form_client(pairs, count);
    if (strcmp(form, "mark") == 0) return form_mark(pairs, count, 0);
    if (strcmp(form, "unmark") == 0) return form_mark(pairs, count, 1);
    if (strcmp(form, "acl") == 0) return form_acl(pairs, count);
    if (strcmp(form, "aclext") == 0) return form_acl_ext(pairs, count);
    if (strcmp(form, "aclmode") == 0) return form_acl_mode(pairs, count);
    cgi_reply_error(404, "no such form");
}

/* ---- views -------------------------------------------------------------------------------- */

/* The station-mark table: {"marks":[{"index":"i","mac":"...","mark":"..."},...]}. */
static void print_marks(const clients_config *clients) {
    fputs("{\"marks\":[", stdout);
    const char *sep = "";
    for (int i = 0; i < WEBMGMT_STA_MARKS; ++i) {
        const sta_mark *e = &clients->m_sta_mark[i];
        if (e->mac.mac[0] == 0) continue;
        char mac[18], mark[sizeof e->mark + 1];
        snprintf(mac, sizeof mac, "%02X:%02X:%02X:%02X:%02X:%02X", e->mac.mac[0], e->mac.mac[1],
                 e->mac.mac[2], e->mac.mac[3], e->mac.mac[4], e->mac.mac[5]);
        memcpy(mark, e->mark, sizeof e->mark);
        mark[sizeof e->mark] = '\0';
        printf("%s{\"index\":\"%d\",\"mac\":\"%s\",\"mark\":", sep, i, mac);
        cgi_print_json_string(mark);
        putchar('}');
        sep = ",";
    }
    puts("]}");
}

static int print_view(const char *name) {
    clients_config *clients = SC_Get_Clients_System_Config();
    if (!clients) {
        cgi_reply_error(500, "the configuration store could not load the section");
        return 0;
    }
    if (strcmp(name, "clients") == 0 || strcmp(name, "black") == 0) {
        cgi_begin_json(200, NULL);
        (name[0] == 'c' ? printf_Clients_json : printf_Clients_black_json)(clients);
    } else if (strcmp(name, "groups") == 0) {
        clients_groups_config *groups = SC_Get_Clients_Groups_System_Config();
        cgi_begin_json(200, NULL);
        printf_Clients_Groups_json(groups);
    } else if (strcmp(name, "stations") == 0) {
        ap_user_config *users = SC_Get_ApUser_System_Config();
        cgi_begin_json(200, NULL);
        printf_WiFi_user_json(users ? &users->m_local : NULL, 0, clients);
    } else if (strcmp(name, "apstations") == 0) {
        cgi_begin_json(200, NULL);
        printf_ApUserList_user_json(SC_Get_ManageApList_System_Config(),
                                    SC_Get_ApUser_System_Config());
    } else if (strcmp(name, "marks") == 0) {
        cgi_begin_json(200, NULL);
        print_marks(clients);
    } else if (strcmp(name, "acl") == 0) {
        char ext[4] = "0";
        cgi_query_value("ext", ext, sizeof ext);
        uint8_t use_ext = (uint8_t)(strcmp(ext, "1") == 0);
        cgi_begin_json(200, NULL);
        printf_WiFi_ACL_json(SC_Get_SC_WiFi_Config(), &use_ext, NULL);
    } else {
        cgi_reply_error(404, "no such view");
    }
    return 0;
}

int main(void) {
    return cgi_serve(print_view, "name the view: clients.cgi?view=...", apply_form, CGI_MAX_PAIRS);
}
