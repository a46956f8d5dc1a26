// The client, client-group, access-list and station-mark forms as a CGI program drives
// them: each request in its own process with a real POST body decoded by process_queue,
// the store read back in a fresh process.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "store/config_data_api.h"
#include "support/harness.h"

using wmtest::TempRoot;

namespace {

using wmtest::Form;
using wmtest::output_of;
using wmtest::post_form;

std::string mac_text(const mac_field &m) {
    return wmtest::mac_text(m.mac);
}

// The accounts in use: "id:name:MAC:deny:bind;" each.
std::string accounts() {
    return output_of([] {
        const clients_config *c = SC_Get_Clients_System_Config();
        std::printf("%d|", c->count);
        for (const client_account &a : c->m_client)
            if (a.m_id > 0)
                std::printf("%d:%s:%s:%d:%d;", a.m_id, a.m_name, mac_text(a.m_haddr).c_str(),
                            a.m_is_deny, a.m_is_bindmac);
    });
}

std::string groups() {
    return output_of([] {
        const clients_groups_config *g = SC_Get_Clients_Groups_System_Config();
        std::printf("%d|", g->count);
        for (const client_group &e : g->m_group)
            if (e.m_id > 0) std::printf("%d:%s;", e.m_id, e.m_name);
    });
}

std::string acl(int radio) {
    return output_of([radio] {
        const wifi_acllist &l = SC_Get_SC_WiFi_Config()->m_radio[radio].m_acllist;
        std::printf("mode %d count %d|", l.mode, l.count);
        for (const acl_entry &e : l.element)
            if (e.id > 0) std::printf("%d:%s:%s:%d:%s;", e.id, e.name, e.mac, e.status, e.mark);
    });
}

std::string ext_acl() {
    return output_of([] {
        const misc_ext_acl &l = SC_Get_Misc_Ext_System_Config()->acl_info;
        std::printf("%d|", l.count);
        for (const acl_entry &e : l.info)
            if (e.id > 0) std::printf("%d:%s:%s;", e.id, e.name, e.mac);
    });
}

Form clients_form(int op) {
    return [op](const form_pair *p, int n) { return save_clients_config(op, p, n); };
}
Form groups_form(int op) {
    return [op](const form_pair *p, int n) { return save_clients_groups_config(op, p, n); };
}
Form acl_form(int op, int radio) {
    return [op, radio](const form_pair *p, int n) { return save_wifi_acl_config(op, p, n, radio); };
}
Form ext_form(int op) {
    return [op](const form_pair *p, int n) { return save_wifi_acl_config_ext(op, p, n); };
}

// ---- client groups ------------------------------------------------------------------------

TEST(ClientGroupForm, AddModifyDeleteAndDeleteAll) {
    TempRoot root;
    EXPECT_EQ(post_form("m_name=staff", groups_form(0)), 0);
    EXPECT_EQ(post_form("m_name=guests", groups_form(0)), 0);
    EXPECT_EQ(groups(), "2|1:staff;2:guests;");
    EXPECT_EQ(post_form("m_id=2&m_name=visitors", groups_form(2)), 0);
    EXPECT_EQ(groups(), "2|1:staff;2:visitors;");
    // A modify of an id not in the list passes the store's answer back.
    EXPECT_EQ(post_form("m_id=7&m_name=x", groups_form(7)), CONFIG_ERR_NO_ID);
    EXPECT_EQ(post_form("id=1", groups_form(-1)), 0);
    EXPECT_EQ(groups(), "1|2:visitors;");
    EXPECT_EQ(post_form("", groups_form(-2)), 0);
    EXPECT_EQ(groups(), "0|");
}

// The group form stores through the list calls only: a change this process made to the
// rest of the section is not saved by it.
TEST(ClientGroupForm, MakesNoSaveCall) {
    TempRoot root;
    EXPECT_EQ(post_form("m_name=staff",
                        [](const form_pair *p, int n) {
                            std::strcpy(SC_Get_Clients_Groups_System_Config()->resved, "unsaved");
                            return save_clients_groups_config(0, p, n);
                        }),
              0);
    EXPECT_EQ(groups(), "1|1:staff;");
    EXPECT_EQ(output_of([] { std::printf("[%s]", SC_Get_Clients_Groups_System_Config()->resved); }),
              "[]");
}

TEST(ClientGroupForm, TenGroupsFillTheTable) {
    TempRoot root;
    for (int i = 0; i < WEBMGMT_CLIENT_GROUPS; ++i)
        EXPECT_EQ(post_form("m_name=g" + std::to_string(i), groups_form(0)), 0);
    EXPECT_EQ(post_form("m_name=one-more", groups_form(0)), CONFIG_ERR_FULL);
    EXPECT_EQ(groups().substr(0, 3), "10|");
}

// ---- client accounts ----------------------------------------------------------------------

TEST(ClientForm, EveryMemberIsConvertedByItsWidth) {
    TempRoot root;
    std::string body = "m_name=alice&m_pass=pw&m_account=acc&m_tel=555&m_mark=desk"
                       "&m_haddr=0a:1b:2c:3d:4e:5f&m_max_conn=70000&m_limit_up=-2"
                       "&m_limit_down=300&m_allow_time=60&m_is_deny=1&m_is_attck=2"
                       "&m_auth_type=3&m_group_id=4&m_state=5&m_role=6&m_is_bindmac=0"
                       "&m_vlan=65535&m_max_on_line=4000000000&m_start_time=1&m_end_time=2"
                       "&m_last_time=3&m_open_id=openid&m_card_id=card";
    EXPECT_EQ(post_form(body, clients_form(0)), 0);
    std::string out = output_of([] {
        const client_account &a = SC_Get_Clients_System_Config()->m_client[0];
        std::printf("%d %s %s %s %s %s %s %d %d %d %d %d %d %d %d %d %d %d %u %u %u %u %u %s %s",
                    a.m_id, a.m_name, a.m_pass, a.m_account, a.m_tel, a.m_mark,
                    mac_text(a.m_haddr).c_str(), a.m_max_conn, a.m_limit_up, a.m_limit_down,
                    a.m_allow_time, a.m_is_deny, a.m_is_attck, a.m_auth_type, a.m_group_id,
                    a.m_state, a.m_role, a.m_is_bindmac, unsigned(a.m_vlan), a.m_max_on_line,
                    a.m_start_time, a.m_end_time, a.m_last_time, a.m_open_id, a.m_card_id);
    });
    // 70000 keeps its low 16 bits (4464); 4000000000 is read as the 32-bit device reads it.
    EXPECT_EQ(out, "1 alice pw acc 555 desk 0A:1B:2C:3D:4E:5F 4464 -2 300 60 1 2 3 4 5 6 0 "
                   "65535 2147483647 1 2 3 openid card");
}

TEST(ClientForm, AddModifyDeleteWriteProcMac) {
    TempRoot root;
    std::string proc_mac = root.path("/var/proc_mac");
    EXPECT_EQ(post_form("m_name=bob&m_haddr=AA:BB:CC:00:11:22&m_is_bindmac=1", clients_form(0)), 0);
    EXPECT_EQ(wmtest::read_file(proc_mac), "AA:BB:CC:00:11:22\n");
    EXPECT_EQ(post_form("m_id=1&m_name=bob&m_haddr=AA:BB:CC:00:11:22&m_is_bindmac=0&m_is_deny=1",
                        clients_form(1)),
              0);
    EXPECT_EQ(wmtest::read_file(proc_mac), "AA:BB:CC:00:11:22-----------\n");
    EXPECT_EQ(accounts(), "1|1:bob:AA:BB:CC:00:11:22:1:0;");
    // Without a MAC in the form /proc/mac is left alone.
    wmtest::write_file(proc_mac, "");
    EXPECT_EQ(post_form("m_id=1&m_name=robert", clients_form(1)), 0);
    EXPECT_EQ(wmtest::read_file(proc_mac), "");
    // A modify the store refuses writes nothing and passes the store's result back.
    EXPECT_EQ(post_form("m_id=9&m_haddr=AA:BB:CC:00:11:22&m_is_bindmac=1", clients_form(9)),
              CONFIG_ERR_NO_ID);
    EXPECT_EQ(wmtest::read_file(proc_mac), "");
    EXPECT_EQ(post_form("id=1&m_haddr=aa:bb:cc:00:11:22", clients_form(-1)), 0);
    EXPECT_EQ(wmtest::read_file(proc_mac), "aa:bb:cc:00:11:22-----------\n");
    EXPECT_EQ(accounts(), "0|");
}

TEST(ClientForm, DeleteAllEmptiesTheTable) {
    TempRoot root;
    for (const char *name : {"a", "b", "c"})
        EXPECT_EQ(post_form(std::string("m_name=") + name, clients_form(0)), 0);
    EXPECT_EQ(accounts().substr(0, 2), "3|");
    EXPECT_EQ(post_form("", clients_form(-2)), 0);
    EXPECT_EQ(accounts(), "0|");
}

// Request data never reaches a shell: every hostile "m_haddr" is written nowhere and runs
// nothing, through add, modify and delete; /proc/mac only ever holds well-formed lines.
TEST(ClientForm, InjectionCorpusRunsNothing) {
    TempRoot root;
    std::string marker = root.path("/tmp/injected");
    std::string proc_mac = root.path("/var/proc_mac");
    const std::string corpus[] = {
        ";touch " + marker,
        "$(touch " + marker + ")",
        "`touch " + marker + "`",
        "\"; touch " + marker + "; echo \"",
        "'; touch " + marker + "; '",
        "AA:BB:CC:DD:EE:FF\ntouch " + marker,
        "AA:BB:CC:DD:EE:FF;touch " + marker,
        "AA:BB$(touch " + marker + ")",
        "-n AA:BB:CC:DD:EE:FF",
        "-e",
        "AA:BB:CC:DD:EE:F",
        "AA-BB-CC-DD-EE-FF",
        "GG:BB:CC:DD:EE:FF",
    };
    EXPECT_EQ(post_form("m_name=victim", clients_form(0)), 0);
    for (const std::string &bad : corpus) {
        SCOPED_TRACE(bad);
        std::string value = wmtest::url_encode(bad);
        wmtest::write_file(proc_mac, "untouched\n");
        EXPECT_EQ(post_form("m_name=x&m_is_bindmac=1&m_haddr=" + value, clients_form(0)), 0);
        EXPECT_EQ(post_form("m_id=1&m_name=y&m_haddr=" + value, clients_form(1)), 0);
        EXPECT_EQ(post_form("id=99&m_haddr=" + value, clients_form(-1)), 0);
        EXPECT_EQ(wmtest::read_file(proc_mac), "untouched\n");
        EXPECT_FALSE(wmtest::file_exists(marker));
    }
}

// ---- wireless access lists ----------------------------------------------------------------

TEST(AclForm, AddModifyDeleteOnOneRadio) {
    TempRoot root;
    EXPECT_EQ(post_form("name=laptop&mac=00:11:22:33:44:55&status=1&mark=desk", acl_form(0, 1)), 0);
    EXPECT_EQ(post_form("name=phone&mac=00:11:22:33:44:66&status=0", acl_form(0, 1)), 0);
    EXPECT_EQ(acl(1),
              "mode 0 count 2|1:laptop:00:11:22:33:44:55:1:desk;2:phone:00:11:22:33:44:66:0:;");
    EXPECT_EQ(acl(0), "mode 0 count 0|");
    // The name is always checked, whatever the firewall's duplicate switch says.
    EXPECT_EQ(post_form("name=laptop&mac=00:00:00:00:00:01", acl_form(0, 1)), 10);
    // Another radio's list is its own.
    EXPECT_EQ(post_form("name=laptop&mac=00:00:00:00:00:01", acl_form(0, 2)), 0);
    // Renaming to another entry's name is refused; keeping its own name is not.
    EXPECT_EQ(post_form("id=2&name=laptop&mac=00:11:22:33:44:66", acl_form(2, 1)), 10);
    EXPECT_EQ(post_form("id=2&name=phone&mac=00:11:22:33:44:77&status=1", acl_form(2, 1)), 0);
    EXPECT_EQ(acl(1),
              "mode 0 count 2|1:laptop:00:11:22:33:44:55:1:desk;2:phone:00:11:22:33:44:77:1:;");
    EXPECT_EQ(post_form("id=1", acl_form(-1, 1)), 0);
    EXPECT_EQ(acl(1), "mode 0 count 1|2:phone:00:11:22:33:44:77:1:;");
    EXPECT_EQ(post_form("", acl_form(-2, 1)), 0);
    EXPECT_EQ(acl(1), "mode 0 count 0|");
    EXPECT_EQ(acl(2), "mode 0 count 1|1:laptop:00:00:00:00:00:01:0:;");
    // A radio outside the three changes nothing.
    EXPECT_EQ(post_form("name=x", acl_form(0, 3)), -1);
    EXPECT_EQ(post_form("name=x", acl_form(0, -1)), -1);
}

TEST(AclForm, ModeIsSetOnEveryRadio) {
    TempRoot root;
    EXPECT_EQ(post_form("", [](const form_pair *, int) { return save_wifi_acl_mode_config(2); }),
              0);
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r)
        EXPECT_EQ(acl(r), "mode 2 count 0|");
}

// The lock file cannot be made: the form says so and stores nothing (10).
TEST(AclForm, LockFileFailureCountsAsDuplicate) {
    TempRoot root;
    ASSERT_EQ(mkdir(root.path("/var/wifi_acl.lock").c_str(), 0755), 0);
    auto r = wmtest::run_in_child([] {
        char n[] = "name", v[] = "x";
        form_pair p[] = {{n, v}};
        return save_wifi_acl_config(0, p, 1, 0);
    });
    EXPECT_EQ(r.exit_code(), 10);
    EXPECT_EQ(r.out, "Cannot Lock file /var/wifi_acl.lock");
    EXPECT_EQ(acl(0), "mode 0 count 0|");
}

TEST(AclExtForm, AddModifyDeleteAndMinusTwoModifies) {
    TempRoot root;
    EXPECT_EQ(post_form("name=tv&mac=00:00:00:00:00:0A", ext_form(0)), 0);
    // No name check on the global list.
    EXPECT_EQ(post_form("name=tv&mac=00:00:00:00:00:0B", ext_form(0)), 0);
    EXPECT_EQ(ext_acl(), "2|1:tv:00:00:00:00:00:0A;2:tv:00:00:00:00:00:0B;");
    // -2 is a modify here: the list has no delete-all.
    EXPECT_EQ(post_form("id=1&name=radio&mac=00:00:00:00:00:0C", ext_form(-2)), 0);
    EXPECT_EQ(ext_acl(), "2|1:radio:00:00:00:00:00:0C;2:tv:00:00:00:00:00:0B;");
    EXPECT_EQ(post_form("id=2", ext_form(-1)), 0);
    EXPECT_EQ(ext_acl(), "1|1:radio:00:00:00:00:00:0C;");
    EXPECT_EQ(post_form("id=5&name=none", ext_form(5)), CONFIG_ERR_NO_ID);
}

// ---- station marks ------------------------------------------------------------------------

std::string marks() {
    return output_of([] {
        const clients_config *c = SC_Get_Clients_System_Config();
        for (int i = 0; i < WEBMGMT_STA_MARKS; ++i) {
            const sta_mark &m = c->m_sta_mark[i];
            if (m.mac.mac[0] || m.mark[0])
                std::printf("%d:%s:%.85s;", i, mac_text(m.mac).c_str(), m.mark);
        }
    });
}

Form mark_form(int index, const char *mac) {
    return [index, mac](const form_pair *p, int n) {
        return save_user_mark(SC_Get_Clients_System_Config(), p, n, index, mac);
    };
}
Form unmark_form(const char *mac) {
    return [mac](const form_pair *, int) {
        return del_user_mark(SC_Get_Clients_System_Config(), mac);
    };
}

TEST(MarkForm, MarkAndClear) {
    TempRoot root;
    EXPECT_EQ(post_form("mark=printer", mark_form(3, "0a:BB:cc:00:00:01")), 0);
    EXPECT_EQ(marks(), "3:0A:BB:CC:00:00:01:printer;");
    // The comparison is exact against upper case: a lower-case text clears nothing.
    EXPECT_EQ(post_form("", unmark_form("0a:bb:cc:00:00:01")), 0);
    EXPECT_EQ(marks(), "3:0A:BB:CC:00:00:01:printer;");
    EXPECT_EQ(post_form("", unmark_form("0A:BB:CC:00:00:01")), 0);
    EXPECT_EQ(marks(), "");
}

// Clearing saves the section whether or not an entry matched.
TEST(MarkForm, ClearSavesEvenWithoutAMatch) {
    TempRoot root;
    EXPECT_EQ(post_form("",
                        [](const form_pair *, int) {
                            clients_config *c = SC_Get_Clients_System_Config();
                            std::strcpy(c->resved, "saved");
                            return del_user_mark(c, "no:such:mac");
                        }),
              0);
    EXPECT_EQ(output_of([] { std::printf("%s", SC_Get_Clients_System_Config()->resved); }),
              "saved");
}

// At most 256 entries in use: with 255 a mark is stored, with 256 it is refused with 2.
TEST(MarkForm, TheTableHoldsAtMost256) {
    TempRoot root;
    auto fill = [](int used) {
        return [used](const form_pair *p, int n) {
            clients_config *c = SC_Get_Clients_System_Config();
            for (int i = 0; i < used; ++i)
                c->m_sta_mark[i].mac.mac[0] = uint8_t(i % 255 + 1);
            // An entry whose MAC starts with 00 counts as free.
            c->m_sta_mark[used + 10].mac.mac[1] = 0x11;
            return save_user_mark(c, p, n, 299, "02:00:00:00:00:99");
        };
    };
    EXPECT_EQ(post_form("mark=last", fill(255)), 0);
    EXPECT_NE(marks().find("299:02:00:00:00:00:99:last;"), std::string::npos);
    TempRoot again;
    EXPECT_EQ(post_form("mark=refused", fill(256)), 2);
    EXPECT_EQ(marks(), "");
}

TEST(MarkForm, IndexOutsideTheTableChangesNothing) {
    TempRoot root;
    EXPECT_EQ(post_form("mark=x", mark_form(300, "02:00:00:00:00:01")), -1);
    EXPECT_EQ(post_form("mark=x", mark_form(-1, "02:00:00:00:00:01")), -1);
    EXPECT_EQ(marks(), "");
}

// The mark is copied over its 85 bytes with no room kept for a terminator.
TEST(MarkForm, LongMarkFillsTheEntry) {
    TempRoot root;
    std::string mark(100, 'm');
    EXPECT_EQ(post_form("mark=" + mark, mark_form(0, "02:00:00:00:00:01")), 0);
    EXPECT_EQ(marks(), "0:02:00:00:00:00:01:" + std::string(85, 'm') + ";");
}

} // namespace
