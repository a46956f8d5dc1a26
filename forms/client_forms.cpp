// The client-account and client-group forms.
#include <cstring>

#include "config_data_api.h"
#include "forms/list_ops.h"
#include "forms/binding.h"
#include "forms/proc_mac.h"
#include "sys/support/text.h"

namespace wm {
namespace {

void bind_group(Bindings &b, client_group &g) {
    b.add<conv::kInt>("m_id", g.m_id);
    b.add<conv::kText>("m_name", g.m_name);
}

// The account's members by the names the pages send, each converted as its width asks:
// 16-bit numbers low 16 bits, one-byte flags and codes one byte, the times 32-bit.
void bind_client(Bindings &b, client_account &c) {
    b.add<conv::kInt>("m_id", c.m_id);
    b.add<conv::kText>("m_name", c.m_name);
    b.add<conv::kText>("m_pass", c.m_pass);
    b.add<conv::kText>("m_account", c.m_account);
    b.add<conv::kText>("m_tel", c.m_tel);
    b.add<conv::kText>("m_mark", c.m_mark);
    b.add<conv::kMac>("m_haddr", c.m_haddr);
    b.add<conv::kShort>("m_max_conn", c.m_max_conn);
    b.add<conv::kShort>("m_limit_up", c.m_limit_up);
    b.add<conv::kShort>("m_limit_down", c.m_limit_down);
    b.add<conv::kShort>("m_allow_time", c.m_allow_time);
    b.add<conv::kTextN>("m_is_deny", c.m_is_deny);
    b.add<conv::kTextN>("m_is_attck", c.m_is_attck);
    b.add<conv::kTextN>("m_auth_type", c.m_auth_type);
    b.add<conv::kTextN>("m_group_id", c.m_group_id);
    b.add<conv::kTextN>("m_state", c.m_state);
    b.add<conv::kTextN>("m_role", c.m_role);
    b.add<conv::kTextN>("m_is_bindmac", c.m_is_bindmac);
    b.add<conv::kShort>("m_vlan", c.m_vlan);
    b.add<conv::kInt2>("m_max_on_line", c.m_max_on_line);
    b.add<conv::kInt2>("m_start_time", c.m_start_time);
    b.add<conv::kInt2>("m_end_time", c.m_end_time);
    b.add<conv::kInt2>("m_last_time", c.m_last_time);
    b.add<conv::kText>("m_open_id", c.m_open_id);
    b.add<conv::kText>("m_card_id", c.m_card_id);
}

// The MAC text of a request, bounded like any value get_prop copies; empty when absent.
struct MacText {
    char text[64]; // a longer value is no MAC, and stays none when cut
    bool given;
};

MacText mac_of(const form_pair *pairs, int count) {
    MacText m;
    std::memset(&m, 0, sizeof m);
    m.given = get_prop_n("m_haddr", m.text, pairs, count, sizeof m.text) != nullptr;
    return m;
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_clients_groups_config(int op, const form_pair *pairs, int count) {
    clients_groups_config *groups = SC_Get_Clients_Groups_System_Config();
    if (!groups) return -1;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        DelClientsGroupsItem(groups, &key);
        return 0;
    }
    if (op == kOpDeleteAll) {
        DelAllClientsGroupsItem();
        return 0;
    }
    client_group g;
    std::memset(&g, 0, sizeof g);
    Bindings b;
    bind_group(b, g);
    b.apply(pairs, count);
    // The groups are stored by the list calls alone: this form makes no save call.
    return op == kOpAdd ? AddClientsGroupsItem(groups, &g) : ModifyClientsGroupsItem(groups, &g);
}

int save_clients_config(int op, const form_pair *pairs, int count) {
    clients_config *clients = SC_Get_Clients_System_Config();
    if (!clients) return -1;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        MacText mac = mac_of(pairs, count);
        DelClientsItem(clients, &key);
        // The station is no longer bound to an account (the device's plain system() call,
        // which the command log does not see).
        write_proc_mac(mac.text, false, false);
        return 0;
    }
    if (op == kOpDeleteAll) {
        DelAllClientsItem();
        return 0;
    }
    client_account c;
    std::memset(&c, 0, sizeof c);
    Bindings b;
    bind_client(b, c);
    b.apply(pairs, count);
    MacText mac = mac_of(pairs, count);

    int rc = op == kOpAdd ? AddClientsItem(clients, &c) : ModifyClientsItem(clients, &c);
    if (rc != CONFIG_OK || !mac.given) return rc;
    // The device filtered only the first characters before its shell saw the text; here
    // the filter runs over them as it did, and a text that is not a MAC writes nothing.
    web_commd_str_filter(mac.text, 4);
    write_proc_mac(mac.text, c.m_is_bindmac == 1, true);
    return 0;
}

} // extern "C"
