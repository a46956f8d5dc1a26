// The client views: client groups, client accounts, the blacklist and one account by MAC.
//
// These documents are compact (no line feeds) and keep the pages' shapes: every account
// object ends in a comma before its closing brace, the groups' filled form has no
// "sumcount" although its empty form has one, and the blacklist prints m_max_conn before
// m_id.
#include <cstring>
#include <iterator>

#include "views/json_print.h"

namespace {

using namespace wm::json;

template <size_t N> void text_member(const char *key, const char (&member)[N]) {
    pair_text(key, member, ",");
}
void int_value(const char *key, long long v) {
    pair_number(key, v, ",");
}
void mac_value(const char *key, const mac_field &mac) {
    pair(key, mac_text(mac.mac).text, ",");
}

// One member of an account object, printed with its trailing comma.
struct Member {
    const char *key;
    void (*print)(const char *key, const client_account &c);
};

template <auto Member_> void number(const char *key, const client_account &c) {
    int_value(key, c.*Member_);
}
template <auto Member_> void text(const char *key, const client_account &c) {
    text_member(key, c.*Member_);
}
void haddr(const char *key, const client_account &c) {
    mac_value(key, c.m_haddr);
}

using A = client_account;
constexpr Member kHaddr{"m_haddr", haddr};
constexpr Member kId{"m_id", number<&A::m_id>};
constexpr Member kMaxConn{"m_max_conn", number<&A::m_max_conn>};

// What follows m_id and m_max_conn, the same in every account view.
constexpr Member kRest[] = {
    {"m_limit_up", number<&A::m_limit_up>},
    {"m_limit_down", number<&A::m_limit_down>},
    {"m_allow_time", number<&A::m_allow_time>},
    {"m_is_deny", number<&A::m_is_deny>},
    {"m_is_attck", number<&A::m_is_attck>},
    {"m_auth_type", number<&A::m_auth_type>},
    {"m_group_id", number<&A::m_group_id>},
    {"m_state", number<&A::m_state>},
    {"m_role", number<&A::m_role>},
    {"m_is_bindmac", number<&A::m_is_bindmac>},
    {"m_vlan", number<&A::m_vlan>},
    {"m_max_on_line", number<&A::m_max_on_line>},
    {"m_start_time", number<&A::m_start_time>},
    {"m_end_time", number<&A::m_end_time>},
    {"m_last_time", number<&A::m_last_time>},
    {"m_open_id", text<&A::m_open_id>},
    {"m_card_id", text<&A::m_card_id>},
    {"m_name", text<&A::m_name>},
    {"m_account", text<&A::m_account>},
    {"m_pass", text<&A::m_pass>},
    {"m_tel", text<&A::m_tel>},
    {"m_mark", text<&A::m_mark>},
};

// The members of an account from m_index to m_mark, each followed by a comma. The full
// list prints m_id before m_max_conn; the blacklist and the single account the other way.
void account_members(const client_account &c, int index, bool id_first) {
    int_value("m_index", index);
    kHaddr.print(kHaddr.key, c);
    const Member &first = id_first ? kId : kMaxConn;
    const Member &second = id_first ? kMaxConn : kId;
    first.print(first.key, c);
    second.print(second.key, c);
    for (const Member &m : kRest)
        m.print(m.key, c);
}

void empty_form(const char *list, int max_count) {
    raw("{\"");
    raw(list);
    raw("\":{\"count\":\"0\",\"pagenum\":\"1\",\"pagecount\":\"0\",\"sumcount\":\"0\","
        "\"onlinecount\":\"0\",");
    pair_number("max_count", max_count, "}}");
}

void list_end(int count, int max_count) {
    raw("{}],");
    pair_number("count", count, ",\"pagenum\":\"1\",\"pagecount\":\"1\",");
    pair_number("onlinecount", count, ",");
    pair_number("max_count", max_count, "}}");
}

// The accounts in use (id above 0) that `keep` accepts.
template <typename Keep> void accounts(const clients_config *clients, bool id_first, Keep keep) {
    if (!clients) return empty_form("Clients", WEBMGMT_CLIENTS);
    raw("{\"Clients\":{\"data\":[");
    int count = 0;
    for (int i = 0; i < WEBMGMT_CLIENTS; ++i) {
        const client_account &c = clients->m_client[i];
        if (c.m_id <= 0 || !keep(c)) continue;
        raw('{');
        account_members(c, i, id_first);
        raw("},");
        ++count;
    }
    list_end(count, WEBMGMT_CLIENTS);
}

} // namespace

extern "C" {

void printf_Clients_Groups_json(const clients_groups_config *groups) {
    if (!groups) return empty_form("Groups", WEBMGMT_CLIENT_GROUPS);
    raw("{\"Groups\":{\"data\":[");
    int count = 0;
    for (int i = 0; i < WEBMGMT_CLIENT_GROUPS; ++i) {
        const client_group &g = groups->m_group[i];
        if (g.m_id <= 0) continue;
        raw('{');
        int_value("m_index", i);
        int_value("m_id", g.m_id);
        text_member("m_name", g.m_name);
        raw("},");
        ++count;
    }
    list_end(count, WEBMGMT_CLIENT_GROUPS);
}

void printf_Clients_json(const clients_config *clients) {
    accounts(clients, true, [](const client_account &) { return true; });
}

void printf_Clients_black_json(const clients_config *clients) {
    accounts(clients, false, [](const client_account &c) { return c.m_is_deny == 1; });
}

void printf_Client_json(const clients_config *clients, const char *mac) {
    if (clients && mac && mac[0] != '\0') {
        for (int i = 0; i < WEBMGMT_CLIENTS; ++i) {
            const client_account &c = clients->m_client[i];
            // Exact: a lower-case text finds nothing; free slots are searched too.
            if (std::strcmp(mac_text(c.m_haddr.mac).text, mac) != 0) continue;
            raw('{');
            account_members(c, i, false);
            raw('}');
            return;
        }
    }
    raw("{\"m_id\":\"-1\"}");
}

} // extern "C"
